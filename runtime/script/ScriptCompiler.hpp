#pragma once

// The compiler of one function, one pass over its tokens. A construct that breaks off compiles as
// far as it goes; its open jumps, and the entries of loops around the break, then lead to the
// error, because skipping over a broken part is as much of an error as running it.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ScriptCode.hpp"
#include "ScriptLimits.hpp"
#include "ScriptLocals.hpp"

namespace port::script {

struct SyntaxError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Compiler {
  public:
    // What an earlier attempt has shown of the function.
    struct Known {
        std::vector<std::int32_t> maybes;  // see maybes()
        bool stepsLocals = false;          // see stepsLocals()
    };
    Compiler(Function& function, ScriptHost* host, bool asWritten, Known known)
        : locals_(std::move(known.maybes)),
          copiesOperands_(known.stepsLocals),
          asWritten_(asWritten),
          fn_(function),
          program_(*function.program),
          tokens_(program_.tokens.list),
          host_(host) {}

    void run();
    // The work that it was, about.
    [[nodiscard]] std::size_t work() const { return scanned_ + fn_.code.size(); }
    // Declared names that are used where they need not be declared yet: without these the code is
    // wrong.
    [[nodiscard]] std::vector<std::int32_t> maybes() const { return locals_.doubted(); }
    // Whether an expression steps a declared name: where it does, a register that another operand
    // waits in is not safe from it.
    [[nodiscard]] bool stepsLocals() const { return stepsLocals_; }

  private:
    // Where an expression has left its value.
    struct Operand {
        enum class Kind : std::uint8_t { Temporary, Local, Constant };
        Kind kind = Kind::Temporary;
        std::uint16_t index = 0;  // register or constant
    };
    // A loop or switch whose body is being compiled, with the jumps out of it.
    struct Scope {
        bool loop = false;
        std::int32_t begin = 0;
        std::vector<std::int32_t> breaks;
        std::vector<std::int32_t> continues;
    };
    // What was open at a point that an error may lead back to.
    struct Mark {
        std::size_t open;
        std::size_t entries;
        std::size_t scopes;
        std::int32_t counters;
    };
    struct Labels {
        std::vector<std::size_t> cases;  // the tokens behind their ':'
        std::vector<double> numbers;     // the labels, if all are constant numbers
        std::size_t otherwise = 0;       // of the last default; 0 if there is none
        std::size_t end = 0;             // the closing brace
    };
    // One bracket, block, statement or prefix operator deeper.
    struct Nested {
        explicit Nested(Compiler& owner);
        Nested(const Nested&) = delete;
        Nested& operator=(const Nested&) = delete;
        ~Nested() { --compiler.nesting_; }
        Compiler& compiler;
    };

    // --- Tokens

    [[nodiscard]] const Tok& token(std::size_t ahead = 0) const {
        return tokens_[std::min(pos_ + ahead, tokens_.size() - 1)];
    }
    [[nodiscard]] bool at(Word word) const { return token().is(word); }
    bool accept(Word word) {
        if (!at(word)) return false;
        ++pos_;
        return true;
    }
    void need(Word word, const char* spelling);
    // Counts the work on a token, which grows with its length.
    void pass(const Tok& token) {
        scanned_ += 1 + token.s.size() / kTextPerStep;
        if (scanned_ > kMaxScanned) tooLarge();
    }

    // --- Code

    [[nodiscard]] std::int32_t here() const { return static_cast<std::int32_t>(fn_.code.size()); }
    // A place that is jumped to: what follows may not be fused with what stands before.
    std::int32_t label() { return lastLabel_ = here(); }
    // The places of instructions.
    std::int32_t emit(Instr instr);
    std::int32_t emitWide(Op op, std::uint16_t a, std::size_t wide, Word word = Word::None);
    std::int32_t openJump(Op op, std::uint16_t a = 0);
    void land(std::int32_t jump);
    void lead(std::int32_t jump, std::int32_t to) {
        instr(jump).setWide(static_cast<std::size_t>(to));
    }
    [[nodiscard]] Instr& instr(std::int32_t place) {
        return fn_.code[static_cast<std::size_t>(place)];
    }
    // The last instruction if nothing jumps behind it.
    [[nodiscard]] Instr* last() {
        return fn_.code.empty() || lastLabel_ == here() ? nullptr : &fn_.code.back();
    }
    [[nodiscard]] Mark mark() const {
        return {open_.size(), entries_.size(), scopes_.size(), counters_};
    }
    void breakOff(const Mark& from, const std::string& message);
    [[noreturn]] void tooLarge();
    // Whether what stands here is mended; it is noted if so.
    bool mends(ScriptMend mend) {
        if (!asWritten_) fn_.mended.emplace_back(pos_, mend);
        return !asWritten_;
    }
    // Moves over a part without leaving code for it.
    template <typename Part>
    void skip(Part part) {
        const std::size_t size = fn_.code.size();
        const std::size_t sites = fn_.sites.size();
        const std::size_t known = locals_.mark();
        part();
        fn_.code.resize(size);
        fn_.sites.resize(sites);
        locals_.unsure(known);
        label();
    }

    // --- Registers and variables

    // Expressions take registers behind the declared names, and give them back in reverse order.
    std::uint16_t temporary();
    void drop(const Operand& operand) {
        if (operand.kind == Operand::Kind::Temporary) --top_;
    }
    std::uint16_t inRegister(Operand& operand);
    void moveTo(std::uint16_t place, const Operand& operand);
    // Into the next free register, if need be.
    Operand inTemporary(const Operand& operand);
    std::uint16_t constant(ScriptValue value);
    Operand number(double value) { return {Operand::Kind::Constant, constant(value)}; }
    [[nodiscard]] const double* numberOf(const Operand& operand) const;

    // The register of a name that is declared here.
    std::uint16_t declare(std::int32_t name);
    void ensure(std::int32_t name);
    // The registers of parameters and declared names, the first ones.
    [[nodiscard]] std::size_t locals() const { return fn_.bound + locals_.declared(); }
    // For the use of a name that is not sure: its place among the maybes, -1 if it has none.
    [[nodiscard]] std::int32_t maybe(std::int32_t name);
    Operand load(std::int32_t name);
    void store(std::int32_t name, Operand value, bool declared);
    void update(std::int32_t name, Word op, Operand right, bool declared);

    // --- Statements

    void block();
    void statement();
    Operand condition();
    void ifStatement();
    void whileStatement();
    void doStatement();
    void forStatement();
    void simpleClause(Word terminator, const char* spelling);
    void leaveStatement();
    void returnStatement();
    void simpleStatement();
    void simplePart(bool declared);
    void dropped();
    void switchStatement();
    Labels scanLabels(std::uint16_t key, std::int32_t counter);
    void switchBodies(const Labels& labels, SwitchTable& table);
    void switchStatements(std::size_t from, std::size_t end,
                          std::map<std::size_t, std::int32_t>& places);

    std::int32_t beginLoop();
    void loopBack(std::int32_t counter, std::int32_t top);
    // The instruction that an error in what it leads to takes the place of.
    [[nodiscard]] std::int32_t entryOf(std::int32_t jump) const;
    void openScope(bool loop) { scopes_.push_back({loop, label(), {}, {}}); }
    Scope closeScope(std::size_t& range);
    void finishScope(const Scope& scope, std::size_t range);

    // --- Expressions

    // Operators that bind as tight as `least` or tighter; 0 for a whole expression.
    Operand expression(int least);
    Operand logical(Word op, int binding, Operand left);
    Operand conditional(const Operand& test);
    Operand binary(Word op, Operand left, Operand right);
    // `plain`: texts are numbers, and not joined.
    void emitBinary(Word op, bool plain, std::uint16_t to, std::uint16_t left, Operand right);
    std::int32_t jumpIfFalse(Operand test);
    Operand unary();
    Operand primary();
    Operand name();
    [[nodiscard]] bool atStep() const;
    Operand stepped(std::int32_t name);
    Operand call(std::string_view name);

    ScriptLocals locals_;
    bool copiesOperands_ = false;
    bool asWritten_ = false;
    Function& fn_;
    Program& program_;
    const std::vector<Tok>& tokens_;
    ScriptHost* host_;
    std::size_t pos_ = 0;
    int nesting_ = 0;
    std::int32_t counters_ = 0;
    std::int32_t lastLabel_ = 0;
    bool exhausted_ = false;
    bool stepsLocals_ = false;
    std::size_t scanned_ = 0;
    std::size_t errorBytes_ = 0;
    std::vector<std::int32_t> open_;  // forward jumps that have not landed
    // Where the loops around this place begin to need their body.
    std::vector<std::int32_t> entries_;
    std::vector<Scope> scopes_;
    std::size_t top_ = 0;                                       // the next free register
    std::unordered_map<std::uint64_t, std::uint16_t> numbers_;  // by their bits
    std::unordered_map<std::string_view, std::uint16_t> texts_;
};

}  // namespace port::script
