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
#include <vector>

#include "ScriptCode.hpp"
#include "ScriptLimits.hpp"

namespace port::script {

struct SyntaxError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Compiler {
  public:
    Compiler(Function& function, const ScriptHost* host)
        : fn_(function), program_(*function.program), tokens_(program_.tokens.list), host_(host) {}

    std::size_t run();

  private:
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
        std::size_t stack;
    };
    struct Labels {
        std::vector<std::size_t> cases;  // the tokens behind their ':'
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
    // The places of instructions; `stack` is what they add to it.
    std::int32_t emit(Instr instr, int stack);
    std::int32_t openJump(Instr jump, int stack);
    void land(std::int32_t jump);
    void adjust(int stack);
    [[nodiscard]] Instr& instr(std::int32_t place) {
        return fn_.code[static_cast<std::size_t>(place)];
    }
    // The last instruction if nothing jumps behind it.
    [[nodiscard]] Instr* last() {
        return fn_.code.empty() || lastLabel_ == here() ? nullptr : &fn_.code.back();
    }
    [[nodiscard]] Mark mark() const {
        return {open_.size(), entries_.size(), scopes_.size(), counters_, stack_};
    }
    void breakOff(const Mark& from, const std::string& message);
    [[noreturn]] void tooLarge();
    // Moves over a part without leaving code for it.
    template <typename Part>
    void skip(Part part) {
        const std::size_t size = fn_.code.size();
        const std::size_t sites = fn_.sites.size();
        const std::size_t texts = fn_.texts.size();
        const std::size_t stack = stack_;
        part();
        fn_.code.resize(size);
        fn_.sites.resize(sites);
        fn_.texts.resize(texts);
        stack_ = stack;
        label();
    }

    // --- Variables

    std::int32_t slotOf(std::int32_t name);
    void settleNames();
    void store(std::int32_t name, bool declared);
    void update(std::int32_t name, Word op, bool declared);

    // --- Statements

    void block();
    void statement();
    void condition();
    void ifStatement();
    void whileStatement();
    void doStatement();
    void forStatement();
    void simpleClause(Word terminator, const char* spelling);
    void leaveStatement();
    void returnStatement();
    void simpleStatement();
    void dropped();
    void switchStatement();
    Labels scanLabels(std::int32_t counter);
    void switchBodies(const Labels& labels, std::size_t table);
    void switchStatements(std::size_t from, std::size_t end,
                          std::map<std::size_t, std::int32_t>& places);

    std::int32_t beginLoop();
    std::int32_t loopBegin(std::int32_t counter);
    void openScope(bool loop) { scopes_.push_back({loop, label(), {}, {}}); }
    Scope closeScope(std::size_t& range);
    void finishScope(const Scope& scope, std::size_t range);

    // --- Expressions

    // Operators that bind as tight as `least` or tighter; 0 for a whole expression.
    void expression(int least);
    void conditional();
    void binary(Word op);
    std::int32_t jumpIfFalse();
    void unary();
    void primary();
    void name();
    void call(std::string_view name);

    Function& fn_;
    Program& program_;
    const std::vector<Tok>& tokens_;
    const ScriptHost* host_;
    std::size_t pos_ = 0;
    int nesting_ = 0;
    std::size_t stack_ = 0;
    std::int32_t counters_ = 0;
    std::int32_t lastLabel_ = 0;
    bool exhausted_ = false;
    std::size_t scanned_ = 0;
    std::size_t errorBytes_ = 0;
    std::vector<std::int32_t> open_;  // forward jumps that have not landed
    // Where the loops around this place begin to need their body.
    std::vector<std::int32_t> entries_;
    std::vector<Scope> scopes_;
    std::map<std::int32_t, std::int32_t> slots_;
};

}  // namespace port::script
