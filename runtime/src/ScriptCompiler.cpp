// One pass over the tokens of a function. A construct that breaks off compiles as far as it goes;
// its open jumps, and the entries of loops around the break, then lead to the error, because
// skipping over a broken part is as much of an error as running it.

#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

#include "ScriptBuiltins.hpp"
#include "ScriptCode.hpp"
#include "ScriptValue.hpp"

namespace port::script {
namespace {

// Brackets, blocks, statements and prefix operators inside each other: bounds the depth of calls
// here. Real scripts stay below 30.
constexpr int kMaxNesting = 200;
// A hostile switch can be compiled anew from each of its labels; real functions stay below 10,000.
constexpr std::size_t kMaxCode = std::size_t{1} << 20U;
// Tokens that the searches for labels may pass, for the same reason.
constexpr std::size_t kMaxScanned = 50'000'000;
constexpr std::size_t kMaxArguments = 255;
constexpr std::size_t kMaxVariables = 4096;

struct SyntaxError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// 1 for the loosest binding; 0 for what is no binary operator.
constexpr int level(Word word) {
    switch (word) {
        case Word::OrOr:
            return 1;
        case Word::AndAnd:
            return 2;
        case Word::Or:
            return 3;
        case Word::Xor:
            return 4;
        case Word::And:
            return 5;
        case Word::Equal:
        case Word::NotEqual:
            return 6;
        case Word::Less:
        case Word::Greater:
        case Word::LessEqual:
        case Word::GreaterEqual:
            return 7;
        case Word::ShiftLeft:
        case Word::ShiftRight:
            return 8;
        case Word::Add:
        case Word::Sub:
            return 9;
        case Word::Mul:
        case Word::Div:
        case Word::Mod:
            return 10;
        default:
            return 0;
    }
}

constexpr bool isComparison(Word word) {
    return level(word) == 6 || level(word) == 7;
}

constexpr bool isAssignment(Word word) {
    return word >= Word::Assign && word <= Word::ShiftRightAssign;
}

class Compiler {
  public:
    explicit Compiler(Function& function)
        : fn_(function), program_(*function.program), tokens_(program_.tokens.list) {}

    void run() {
        pos_ = fn_.body;
        for (const std::string& name : fn_.params) {
            fn_.paramSlots.push_back(name.empty() ? -1 : slotOf(program_.names.id(name)));
        }
        const Mark start = mark();
        try {
            block();
        } catch (const SyntaxError& error) {
            breakOff(start, error.what());
        }
        fn_.code.push_back({Op::ReturnEmpty});
        settleNames();
        fn_.compiled = true;
    }

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
    struct Nested {
        explicit Nested(Compiler& owner) : compiler(owner) {
            if (compiler.nesting_ == kMaxNesting) {
                throw SyntaxError("script nesting limit exceeded");
            }
            ++compiler.nesting_;
        }
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
    void need(Word word, const char* spelling) {
        if (accept(word)) return;
        throw SyntaxError(std::string("expected ") + spelling + " near '" + std::string(token().s) +
                          "'");
    }

    // --- Code

    [[nodiscard]] std::int32_t here() const { return static_cast<std::int32_t>(fn_.code.size()); }

    [[noreturn]] void tooLarge() {
        exhausted_ = true;
        throw SyntaxError("script function too large");
    }

    // A place that is jumped to: what follows may not be fused with what stands before.
    std::int32_t label() { return lastLabel_ = here(); }

    std::int32_t emit(Instr instr, int stack) {
        if (fn_.code.size() >= kMaxCode) tooLarge();
        fn_.code.push_back(instr);
        adjust(stack);
        return here() - 1;
    }
    void adjust(int stack) {
        stack_ += static_cast<std::size_t>(stack);
        fn_.maxStack = std::max(fn_.maxStack, stack_);
    }
    [[nodiscard]] Instr& instr(std::int32_t place) {
        return fn_.code[static_cast<std::size_t>(place)];
    }
    // The last instruction if nothing jumps behind it.
    [[nodiscard]] Instr* last() {
        return fn_.code.empty() || lastLabel_ == here() ? nullptr : &fn_.code.back();
    }

    std::int32_t openJump(Instr jump, int stack) {
        open_.push_back(emit(jump, stack));
        return open_.back();
    }
    void land(std::int32_t jump) {
        open_.erase(std::find(open_.rbegin(), open_.rend(), jump).base() - 1);
        instr(jump).a = label();
    }

    [[nodiscard]] Mark mark() const {
        return {open_.size(), entries_.size(), scopes_.size(), counters_, stack_};
    }

    // The rest of what was begun since `from` cannot be had: all that leads there throws instead.
    void breakOff(const Mark& from, const std::string& message) {
        const auto error = static_cast<std::int32_t>(fn_.errors.size());
        fn_.errors.push_back(message);
        const std::int32_t thrower = label();
        fn_.code.push_back({Op::Throw, Word::None, false, error});
        for (; open_.size() > from.open; open_.pop_back()) instr(open_.back()).a = thrower;
        for (; entries_.size() > from.entries; entries_.pop_back()) {
            instr(entries_.back()) = {Op::Throw, Word::None, false, error};
        }
        for (; scopes_.size() > from.scopes; scopes_.pop_back()) {
            for (const std::int32_t jump : scopes_.back().breaks) instr(jump).a = thrower;
            for (const std::int32_t jump : scopes_.back().continues) instr(jump).a = thrower;
        }
        counters_ = from.counters;
        stack_ = from.stack;
    }

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

    std::int32_t slotOf(std::int32_t name) {
        const auto [slot, added] = slots_.try_emplace(name, static_cast<std::int32_t>(fn_.slots));
        if (added && ++fn_.slots > kMaxVariables) throw SyntaxError("too many script variables");
        return slot->second;
    }

    void settleNames() {
        for (Instr& instr : fn_.code) {
            const bool named =
                instr.op == Op::LoadName || instr.op == Op::StoreName || instr.op == Op::UpdateName;
            if (!named) continue;
            const auto slot = slots_.find(instr.b);
            if (slot == slots_.end()) continue;
            instr.a = slot->second;
            instr.op = instr.op == Op::LoadName    ? Op::LoadSlot
                       : instr.op == Op::StoreName ? Op::StoreSlot
                                                   : Op::UpdateSlot;
        }
    }

    void store(std::int32_t name, bool declared) {
        if (declared) {
            emit({Op::DeclareSlot, Word::None, true, slotOf(name), name}, -1);
        } else {
            emit({Op::StoreName, Word::None, false, -1, name}, -1);
        }
    }

    // `op` is the assignment without its '='; the right side is on the stack.
    void update(std::int32_t name, Word op, bool declared) {
        if (declared) slotOf(name);
        emit({Op::UpdateName, op, declared, -1, name}, -1);
    }

    // --- Statements

    void block() {
        need(Word::LeftBrace, "{");
        while (!at(Word::RightBrace) && token().k != TK::End) statement();
        need(Word::RightBrace, "}");
    }

    void statement() {
        const Nested nested(*this);
        switch (token().k == TK::Str ? Word::None : token().word) {
            case Word::LeftBrace:
                return block();
            case Word::Switch:
                return switchStatement();
            case Word::Do:
                return doStatement();
            case Word::If:
                return ifStatement();
            case Word::While:
                return whileStatement();
            case Word::For:
                return forStatement();
            case Word::Break:
            case Word::Continue:
                return leaveStatement();
            case Word::Return:
                return returnStatement();
            default:
                simpleStatement();
                accept(Word::Semicolon);
        }
    }

    void condition() {
        need(Word::LeftParen, "(");
        expression(0);
        need(Word::RightParen, ")");
    }

    // A chain of "else if" is one loop here, however long it is.
    void ifStatement() {
        std::vector<std::int32_t> ends;
        for (;;) {
            ++pos_;
            condition();
            const std::int32_t otherwise = jumpIfFalse();
            statement();
            const bool more = accept(Word::Else);
            if (more) ends.push_back(openJump({Op::Jump}, 0));
            land(otherwise);
            if (more && at(Word::If)) continue;
            if (more) statement();
            break;
        }
        while (!ends.empty()) {
            land(ends.back());
            ends.pop_back();
        }
    }

    std::int32_t beginLoop() {
        const std::int32_t counter = counters_++;
        fn_.counters = std::max(fn_.counters, static_cast<std::size_t>(counters_));
        return counter;
    }

    std::int32_t loopBegin(std::int32_t counter) {
        return emit({Op::LoopBegin, Word::None, false, 0, counter}, 0);
    }

    void openScope(bool loop) { scopes_.push_back({loop, label(), {}, {}}); }

    // The body ends here. A loop's round goes on at `continueTo`, code that is still to come.
    Scope closeScope(std::size_t& range) {
        Scope scope = std::move(scopes_.back());
        scopes_.pop_back();
        range = fn_.ranges.size();
        fn_.ranges.push_back({scope.begin, here(), 0, scope.loop ? label() : -1});
        for (const std::int32_t jump : scope.continues) instr(jump).a = here();
        return scope;
    }

    void finishScope(const Scope& scope, std::size_t range) {
        fn_.ranges[range].breakTo = label();
        for (const std::int32_t jump : scope.breaks) instr(jump).a = here();
    }

    // The condition is evaluated once, then the body skipped to learn its end: a broken body is an
    // error even if the condition is false.
    void whileStatement() {
        const std::int32_t counter = beginLoop();
        const std::size_t conditionAt = ++pos_;
        condition();
        const std::int32_t leave = jumpIfFalse();
        entries_.push_back(leave);
        loopBegin(counter);
        openScope(true);
        const std::int32_t top = here();
        statement();
        const std::size_t end = pos_;
        std::size_t range = 0;
        const Scope scope = closeScope(range);
        pos_ = conditionAt;
        condition();
        emit({Op::LoopBackIf, Word::None, false, top, counter}, -1);
        pos_ = end;
        entries_.pop_back();
        land(leave);
        finishScope(scope, range);
        --counters_;
    }

    void doStatement() {
        const std::int32_t counter = beginLoop();
        ++pos_;
        entries_.push_back(loopBegin(counter));
        openScope(true);
        const std::int32_t top = here();
        statement();
        std::size_t range = 0;
        const Scope scope = closeScope(range);
        if (!accept(Word::While)) throw SyntaxError("expected while after do");
        condition();
        emit({Op::LoopBackIf, Word::None, false, top, counter}, -1);
        accept(Word::Semicolon);
        entries_.pop_back();
        finishScope(scope, range);
        --counters_;
    }

    // The condition is evaluated once ahead of the loop and again at the head of each round.
    void forStatement() {
        const std::int32_t counter = beginLoop();
        ++pos_;
        need(Word::LeftParen, "(");
        simpleClause(Word::Semicolon, ";");
        const std::size_t conditionAt = pos_;
        const bool conditional = !at(Word::Semicolon);
        if (conditional) expression(0);
        need(Word::Semicolon, ";");
        std::vector<std::int32_t> leaves;
        if (conditional) leaves.push_back(jumpIfFalse());
        const std::int32_t begin = loopBegin(counter);
        entries_.push_back(conditional ? leaves[0] : begin);
        const std::size_t incrementAt = pos_;
        skip([&] { simpleClause(Word::RightParen, ")"); });
        const std::size_t bodyAt = pos_;
        const std::int32_t top = label();
        if (conditional) {
            pos_ = conditionAt;
            expression(0);
            leaves.push_back(jumpIfFalse());
        }
        pos_ = bodyAt;
        openScope(true);
        statement();
        const std::size_t end = pos_;
        std::size_t range = 0;
        const Scope scope = closeScope(range);
        pos_ = incrementAt;
        simpleClause(Word::RightParen, ")");
        emit({Op::LoopBack, Word::None, false, top, counter}, 0);
        pos_ = end;
        entries_.pop_back();
        for (const std::int32_t leave : leaves) land(leave);
        finishScope(scope, range);
        --counters_;
    }

    void simpleClause(Word terminator, const char* spelling) {
        if (!at(terminator)) simpleStatement();
        need(terminator, spelling);
    }

    // break and continue. Outside any loop they leave the function, to a loop of its callers.
    void leaveStatement() {
        const bool breaks = token().word == Word::Break;
        ++pos_;
        accept(Word::Semicolon);
        const auto scope = std::find_if(scopes_.rbegin(), scopes_.rend(),
                                        [&](const Scope& s) { return breaks || s.loop; });
        if (scope == scopes_.rend()) {
            emit({breaks ? Op::EscapeBreak : Op::EscapeContinue}, 0);
        } else {
            (breaks ? scope->breaks : scope->continues).push_back(emit({Op::Jump}, 0));
        }
    }

    void returnStatement() {
        ++pos_;
        if (at(Word::Semicolon)) {
            emit({Op::ReturnEmpty}, 0);
        } else {
            expression(0);
            emit({Op::Return}, -1);
        }
        accept(Word::Semicolon);
    }

    // A declaration, an assignment, a step or an expression whose value is dropped.
    void simpleStatement() {
        const bool declared = token().k == TK::Id && accept(Word::TypeName);
        const Tok name = token();
        const Word next = token(1).k == TK::Sym ? token(1).word : Word::None;
        if (name.k != TK::Id) return dropped();
        if (isAssignment(next)) {
            const std::int32_t id = program_.names.id(name.s);
            pos_ += 2;
            expression(0);
            if (next == Word::Assign) return store(id, declared);
            return update(id, plainOperator(next), declared);
        }
        if (next == Word::Increment || next == Word::Decrement) {
            pos_ += 2;
            emit({Op::Number, Word::None, false, 0, 0, 1.0}, 1);
            const Word op = next == Word::Increment ? Word::Add : Word::Sub;
            return update(program_.names.id(name.s), op, declared);
        }
        if (!declared || next == Word::LeftParen) return dropped();
        ++pos_;
        emit({Op::Number}, 1);
        store(program_.names.id(name.s), true);
    }

    void dropped() {
        expression(0);
        emit({Op::Pop}, -1);
    }

    static Word plainOperator(Word assignment) {
        switch (assignment) {
            case Word::AddAssign:
                return Word::Add;
            case Word::SubAssign:
                return Word::Sub;
            case Word::MulAssign:
                return Word::Mul;
            case Word::DivAssign:
                return Word::Div;
            case Word::ModAssign:
                return Word::Mod;
            case Word::AndAssign:
                return Word::And;
            case Word::OrAssign:
                return Word::Or;
            case Word::XorAssign:
                return Word::Xor;
            case Word::ShiftLeftAssign:
                return Word::ShiftLeft;
            default:
                return Word::ShiftRight;
        }
    }

    // --- switch

    struct Labels {
        std::vector<std::size_t> cases;  // the tokens behind their ':'
        std::size_t otherwise = 0;       // of the last default; 0 if there is none
        std::size_t end = 0;             // the closing brace
    };

    void switchStatement() {
        const std::int32_t counter = beginLoop();
        ++pos_;
        condition();
        need(Word::LeftBrace, "{");
        emit({Op::SwitchBegin, Word::None, false, 0, counter}, 0);
        const Labels labels = scanLabels(counter);
        const auto table = static_cast<std::int32_t>(fn_.switches.size());
        fn_.switches.emplace_back();
        entries_.push_back(emit({Op::SwitchJump, Word::None, false, table, counter}, -1));
        --counters_;
        switchBodies(labels, static_cast<std::size_t>(table));
        entries_.pop_back();
        pos_ = labels.end + 1;
    }

    // Every label is evaluated, also those behind the match. Braces count by text, so that a
    // constant that is nothing but a brace counts too.
    Labels scanLabels(std::int32_t counter) {
        Labels labels;
        for (int depth = 1;; ++pos_) {
            if (++scanned_ > kMaxScanned) tooLarge();
            if (token().k == TK::End) need(Word::RightBrace, "}");
            if (token().word == Word::LeftBrace) ++depth;
            if (token().word == Word::RightBrace && --depth == 0) break;
            if (depth == 1 && token().word == Word::Case) {
                ++pos_;
                expression(0);
                const auto index = static_cast<std::int32_t>(labels.cases.size());
                if (!at(Word::Colon)) need(Word::Colon, ":");
                emit({Op::CaseTest, Word::None, false, index, counter}, -1);
                labels.cases.push_back(pos_ + 1);
            } else if (depth == 1 && token().word == Word::Default) {
                ++pos_;
                if (!at(Word::Colon)) need(Word::Colon, ":");
                labels.otherwise = pos_ + 1;
            }
        }
        labels.end = pos_;
        return labels;
    }

    // Statements run from the label that is met to the closing brace. What stands before it is not
    // even parsed, so each label begins a walk of its own until it meets one that was made before.
    void switchBodies(const Labels& labels, std::size_t table) {
        std::map<std::size_t, std::int32_t> places;
        std::vector<std::int32_t> ends;
        openScope(false);
        const auto place = [&](std::size_t target) {
            if (!places.contains(target)) {
                switchStatements(target, labels.end, places);
                ends.push_back(openJump({Op::Jump}, 0));
            }
            return places[target];
        };
        std::vector<std::int32_t> targets;
        for (const std::size_t target : labels.cases) targets.push_back(place(target));
        const std::int32_t otherwise = labels.otherwise != 0 ? place(labels.otherwise) : -1;
        std::size_t range = 0;
        const Scope scope = closeScope(range);
        while (!ends.empty()) {
            land(ends.back());
            ends.pop_back();
        }
        finishScope(scope, range);
        fn_.switches[table] = {std::move(targets), otherwise >= 0 ? otherwise : here()};
    }

    void switchStatements(std::size_t from, std::size_t end,
                          std::map<std::size_t, std::int32_t>& places) {
        const Mark start = mark();
        pos_ = from;
        places[from] = label();
        try {
            while (pos_ < end) {
                if (at(Word::Case)) {
                    ++pos_;
                    skip([&] { expression(0); });
                    need(Word::Colon, ":");
                } else if (accept(Word::Default)) {
                    need(Word::Colon, ":");
                } else {
                    statement();
                }
                const auto [known, added] = places.try_emplace(pos_, label());
                if (!added) {
                    emit({Op::Jump, Word::None, false, known->second}, 0);
                    return;
                }
            }
        } catch (const SyntaxError& error) {
            // The walk over the whole switch does not come here: only running does.
            if (exhausted_) throw;
            breakOff(start, error.what());
        }
    }

    // --- Expressions

    void expression(int least) {
        unary();
        for (;;) {
            const Word op = token().k == TK::Sym ? token().word : Word::None;
            const int binding = level(op);
            if (binding == 0 || binding < least) break;
            ++pos_;
            if (op == Word::AndAnd || op == Word::OrOr) {
                const Op jump = op == Word::AndAnd ? Op::AndJump : Op::OrJump;
                const std::int32_t decided = openJump({jump}, -1);
                expression(binding + 1);
                emit({Op::ToTruth}, 0);
                land(decided);
            } else {
                expression(binding + 1);
                binary(op);
            }
        }
        // Only at the outermost level: no bare operand of an operator.
        if (least == 0 && accept(Word::Question)) conditional();
    }

    void conditional() {
        const Nested nested(*this);
        const std::int32_t otherwise = jumpIfFalse();
        expression(0);
        need(Word::Colon, ":");
        const std::int32_t end = openJump({Op::Jump}, 0);
        adjust(-1);
        land(otherwise);
        expression(0);
        land(end);
    }

    void binary(Word op) {
        Instr* const right = last();
        if (right != nullptr && right->op == Op::Number) {
            *right = {Op::BinaryNumber, op, false, 0, 0, right->number};
            adjust(-1);
        } else {
            emit({Op::Binary, op}, -1);
        }
    }

    // Takes the comparison before it into itself.
    std::int32_t jumpIfFalse() {
        Instr* const test = last();
        const bool fuses = test != nullptr && isComparison(test->word) &&
                           (test->op == Op::Binary || test->op == Op::BinaryNumber);
        if (!fuses) return openJump({Op::JumpIfFalse}, -1);
        test->op = test->op == Op::Binary ? Op::JumpUnless : Op::JumpUnlessNumber;
        adjust(-1);
        open_.push_back(here() - 1);
        return open_.back();
    }

    void unary() {
        const Nested nested(*this);
        const Word op = token().k == TK::Sym ? token().word : Word::None;
        if (op != Word::Not && op != Word::Tilde && op != Word::Sub && op != Word::Add) {
            return primary();
        }
        ++pos_;
        unary();
        emit({Op::Unary, op}, 0);
    }

    void primary() {
        const Tok& first = token();
        if (first.k == TK::Id) return name();
        if (first.k == TK::Num) {
            emit({Op::Number, Word::None, false, 0, 0, literalNumber(std::string(first.s))}, 1);
            ++pos_;
        } else if (first.k == TK::Str) {
            emit({Op::Text, Word::None, false, static_cast<std::int32_t>(fn_.texts.size())}, 1);
            fn_.texts.emplace_back(first.s);
            ++pos_;
        } else if (accept(Word::LeftParen)) {
            expression(0);
            need(Word::RightParen, ")");
        } else {
            throw SyntaxError("unexpected token " + std::string(first.s));
        }
    }

    void name() {
        const Tok name = token();
        ++pos_;
        if (accept(Word::LeftParen)) return call(name.s);
        if (name.word == Word::True || name.word == Word::False) {
            emit({Op::Truth, Word::None, false, name.word == Word::True ? 1 : 0}, 1);
        } else {
            emit({Op::LoadName, Word::None, false, -1, program_.names.id(name.s)}, 1);
        }
    }

    void call(std::string_view name) {
        std::size_t count = 0;
        if (!at(Word::RightParen)) {
            do {
                if (count == kMaxArguments) throw SyntaxError("too many arguments");
                expression(0);
                ++count;
            } while (accept(Word::Comma));
        }
        need(Word::RightParen, ")");
        const std::string folded = lower(name);
        const Builtin* const builtin = findBuiltin(folded, count);
        Function* const user = program_.find(folded);
        const Op op = builtin != nullptr ? Op::CallBuiltin
                      : user != nullptr  ? Op::CallUser
                                         : Op::CallHost;
        emit({op, Word::None, false, static_cast<std::int32_t>(fn_.sites.size())},
             1 - static_cast<int>(count));
        fn_.sites.push_back({builtin, user, std::string(name), count});
    }

    Function& fn_;
    Program& program_;
    const std::vector<Tok>& tokens_;
    std::size_t pos_ = 0;
    int nesting_ = 0;
    std::size_t stack_ = 0;
    std::int32_t counters_ = 0;
    std::int32_t lastLabel_ = 0;
    bool exhausted_ = false;
    std::size_t scanned_ = 0;
    std::vector<std::int32_t> open_;  // forward jumps that have not landed
    std::vector<std::int32_t>
        entries_;  // where the loops around this place begin to need their body
    std::vector<Scope> scopes_;
    std::map<std::int32_t, std::int32_t> slots_;
};

}  // namespace

void compile(Function& function) {
    Compiler(function).run();
}

}  // namespace port::script
