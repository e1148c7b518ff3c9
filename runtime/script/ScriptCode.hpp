#pragma once

// What a script is compiled to: instructions on registers, one list a function.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ScriptLexer.hpp"
#include "ScriptMends.hpp"
#include "ScriptPreprocessor.hpp"
#include "ScriptVM.hpp"

namespace port::script {

struct Builtin;
struct Program;

// R are the registers of a call: its parameters and declared names, and then what expressions need
// besides. K are the constants of its function.
enum class Op : std::uint8_t {
    Move,        // R[a] = R[b]
    Constant,    // R[a] = K[wide]
    Truth,       // R[a] = whether R[b] holds
    LoadName,    // R[a] = the variable `wide` of the context
    StoreName,   // the reverse
    UpdateName,  // the variable `wide` of the context: `word` applied to it and R[a]
    // The same for a name that the call may have declared by now: maybes[wide].
    LoadMaybe,
    StoreMaybe,
    UpdateMaybe,
    Declare,  // maybes[wide] is declared from here on
    // R[a] = R[b] `word` R[c], or K[c] in those that end in K.
    Add,  // also joins texts
    AddK,
    Sum,  // only adds
    SumK,
    Sub,
    SubK,
    Mul,
    MulK,
    Div,
    DivK,
    Binary,
    BinaryK,
    Prefix,  // R[a] = `word` R[b]
    // Whether R[a] and R[b], or K[b], compare so: then the jump that follows is passed over.
    Equal,
    NotEqual,
    Less,
    LessEqual,
    EqualK,
    NotEqualK,
    LessK,
    LessEqualK,
    GreaterK,
    GreaterEqualK,
    // Jumps, to `wide`.
    Jump,
    JumpIfFalse,  // R[a]
    JumpIfTrue,
    LoopBegin,  // counter a = 0
    LoopBack,   // one round more, unless counter a is at its limit
    StepBack,   // SumK and the LoopBack behind it
    CountBack,  // those, and the Less of R[a] that the round begins with
    CountBackK,
    SwitchBegin,   // counter a = no match
    CaseTest,      // counter c = the number of this label, if R[a] is R[b] and it has no match
    SwitchJump,    // by switches[wide] and counter a
    SwitchNumber,  // by switches[wide] and R[a]
    // Calls, by sites[wide]: the arguments begin at R[a], where the result comes.
    CallBuiltin,
    CallUser,
    CallHost,
    Return,  // R[a]
    ReturnEmpty,
    EscapeBreak,  // a break outside any loop or switch of its function
    EscapeContinue,
    Throw,  // errors[wide]
};

[[nodiscard]] constexpr bool isTest(Op op) {
    return op >= Op::Equal && op <= Op::GreaterEqualK;
}

struct Instr {
    Op op = Op::Move;
    Word word = Word::None;
    std::uint16_t a = 0;
    std::uint16_t b = 0;
    std::uint16_t c = 0;

    // b and c as one number.
    [[nodiscard]] std::uint32_t wide() const { return b | std::uint32_t{c} << 16U; }
    void setWide(std::size_t value) {
        b = static_cast<std::uint16_t>(value);
        c = static_cast<std::uint16_t>(value >> 16U);
    }
};
static_assert(sizeof(Instr) == 8);

struct Function;

struct CallSite {
    const Builtin* builtin = nullptr;
    Function* user = nullptr;
    HostTarget host;
    const std::string* name = nullptr;  // as the script spells it, one of Names
    std::size_t count = 0;
};

// Where a break or continue that leaves a called function goes on, for calls in [begin, end).
struct CatchRange {
    std::int32_t begin = 0;
    std::int32_t end = 0;
    std::int32_t breakTo = 0;
    std::int32_t continueTo = -1;  // -1 in a switch, which only catches breaks
};

struct SwitchTable {
    std::vector<std::int32_t> targets;  // by label
    std::int32_t otherwise = 0;
    // Where all labels are numbers: those and their targets, in rising order and far enough apart
    // that a key is no more than one of them. The labels as they were written otherwise.
    std::vector<std::pair<double, std::int32_t>> numbers;
};

// A declared name that some places reach before it is declared.
struct Maybe {
    std::uint16_t place = 0;  // register
    std::int32_t name = 0;
};

// Compiled at its first call, or ahead of it.
struct Function {
    Program* program = nullptr;
    std::string name;                 // lower-cased
    std::size_t body = 0;             // the token of its '{'
    std::vector<std::string> params;  // an unnamed one is empty

    bool compiled = false;
    std::vector<Instr> code;
    std::vector<ScriptValue> constants;
    std::vector<std::string> errors;
    std::vector<std::size_t> errorTokens;                    // where each of them breaks off
    std::vector<std::pair<std::size_t, ScriptMend>> mended;  // tokens that were
    std::vector<CallSite> sites;
    std::vector<SwitchTable> switches;
    std::vector<Maybe> maybes;
    std::vector<CatchRange> ranges;  // inner ones first
    std::size_t bound = 0;           // parameters that have a register, the first ones
    std::size_t registers = 0;
    std::size_t counters = 0;
    std::size_t names = 0;  // variable names of the machine that it may use
    std::size_t cost = 0;   // steps of a call

    std::size_t making = 0;  // steps that compiling has cost, which the first call pays
    bool paid = false;

    void forget();  // what compiling has made of it
};

// Numbers for the variable names of all scripts of a machine, and their constant texts, each of
// which all scripts share.
class Names {
  public:
    std::int32_t id(std::string_view name);
    const ScriptText& constant(std::string_view text);
    [[nodiscard]] const std::string& text(std::int32_t id) const {
        return texts_[static_cast<std::size_t>(id)];
    }
    [[nodiscard]] std::size_t size() const { return texts_.size(); }

  private:
    TextMap<std::int32_t> ids_;
    TextMap<ScriptText> constants_;
    std::deque<std::string> texts_;
};

// The tokens of one text and the functions defined in it, on top of the settled ones of `base`,
// whose other tokens the text begins with.
struct Program {
    Program(Tokens text, Names& allNames, Program* under = nullptr);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // The first definition of that name in any case; null if there is none.
    [[nodiscard]] Function* find(std::string_view name) const;
    [[nodiscard]] Function* findSettled(std::string_view name) const;

    Tokens tokens;
    Names& names;
    Program* base = nullptr;
    std::deque<Function> functions;
    TextMap<Function*> byName;  // lower-cased
    // The tokens up to here, a number of whole definitions, mean the same whatever follows the
    // text.
    std::size_t settled = 0;
    // Whether the text ends inside a brace that `more` does not close: no more functions begin.
    [[nodiscard]] bool swallows(const std::vector<Tok>& more) const;
    const Function* unclosed = nullptr;  // the function of that brace, if it is one's

  private:
    void findFunctions();

    std::size_t depth_ = 0;  // open braces at the end; 0 also where that is not the whole story
};

// Compiles a function in place. What is no valid statement becomes an instruction that throws
// where a walk over the tokens would meet it; compiling itself never fails. Calls are resolved by
// `host`, which may be null. Gives the tokens that it passed, about.
std::size_t compile(Function& function, ScriptHost* host, bool asWritten);

}  // namespace port::script
