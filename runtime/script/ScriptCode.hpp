#pragma once

// What a script is compiled to: instructions for a stack machine, one list a function.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ScriptLexer.hpp"
#include "ScriptPreprocessor.hpp"
#include "ScriptVM.hpp"

namespace port::script {

struct Builtin;
struct Program;

enum class Op : std::uint8_t {
    Number,  // push number
    Text,    // push texts[a]
    Truth,   // push the bool a
    // Variables: b is the name, a the slot if the function declares that name anywhere.
    LoadName,
    LoadSlot,
    StoreName,
    StoreSlot,
    DeclareSlot,  // store that makes the slot present
    UpdateName,   // `word` applied to the variable and the top, then stored
    UpdateSlot,   // the same; a declaration if flag
    Pop,
    // Operators, `word` tells which.
    Unary,
    Binary,
    BinaryNumber,  // right side is number
    ToTruth,
    // Jumps, to a.
    Jump,
    JumpIfFalse,       // pops
    JumpUnless,        // pops two: jumps unless `word` holds between them
    JumpUnlessNumber,  // the same with number on the right
    AndJump,           // if the top is false: it becomes false and jumps, else pops
    OrJump,
    LoopBegin,    // counter b = 0
    LoopBack,     // one round more: jumps to a unless counter b is at its limit
    SwitchBegin,  // counter b = no match
    CaseTest,     // pops a label: label a matches the key below it, if it is the first
    SwitchJump,   // pops the key, jumps by switches[a] and counter b
    // Calls, by sites[a].
    CallBuiltin,
    CallUser,
    CallHost,
    Return,  // pops
    ReturnEmpty,
    EscapeBreak,  // a break outside any loop or switch of its function
    EscapeContinue,
    Throw,  // errors[a]
};

struct Instr {
    Op op = Op::Pop;
    Word word = Word::None;
    bool flag = false;
    std::int32_t a = 0;
    std::int32_t b = 0;
    double number = 0.0;
};

struct Function;

struct CallSite {
    const Builtin* builtin = nullptr;
    Function* user = nullptr;
    const HostFunction* host = nullptr;
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
    std::vector<std::int32_t> targets;
    std::int32_t otherwise = 0;
};

// Compiled at its first call.
struct Function {
    Program* program = nullptr;
    std::string name;                 // lower-cased
    std::size_t body = 0;             // the token of its '{'
    std::vector<std::string> params;  // an unnamed one is empty

    bool compiled = false;
    std::vector<Instr> code;
    std::vector<ScriptValue> texts;
    std::vector<std::string> errors;
    std::vector<CallSite> sites;
    std::vector<SwitchTable> switches;
    std::vector<CatchRange> ranges;        // inner ones first
    std::vector<std::int32_t> paramSlots;  // -1 for one that is bound to nothing
    std::size_t slots = 0;
    std::size_t counters = 0;
    std::size_t maxStack = 0;
};

// Numbers for the variable names of all scripts of a machine.
class Names {
  public:
    std::int32_t id(std::string_view name);
    [[nodiscard]] const std::string& text(std::int32_t id) const {
        return texts_[static_cast<std::size_t>(id)];
    }
    [[nodiscard]] std::size_t size() const { return texts_.size(); }

  private:
    TextMap<std::int32_t> ids_;
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
std::size_t compile(Function& function, const ScriptHost* host);

}  // namespace port::script
