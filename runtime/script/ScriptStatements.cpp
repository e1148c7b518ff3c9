// Blocks, branches, loops, switches and the statements inside them.

#include <algorithm>
#include <utility>

#include "ScriptCompiler.hpp"

namespace port::script {
namespace {

constexpr bool isAssignment(Word word) {
    return word >= Word::Assign && word <= Word::ShiftRightAssign;
}

Word plainOperator(Word assignment) {
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

// What the step at the end of a loop's round becomes, where the next round begins with `head`.
Op backOf(const Instr& step, const Instr& head) {
    if (head.a != step.a) return Op::StepBack;
    return head.op == Op::Less    ? Op::CountBack
           : head.op == Op::LessK ? Op::CountBackK
                                  : Op::StepBack;
}

// Whether a key is equal to one of them at most, however it is rounded.
bool apart(std::vector<double> numbers) {
    std::ranges::sort(numbers);
    const auto close = [](double a, double b) { return b - a < 0.00001; };
    return !numbers.empty() && std::ranges::adjacent_find(numbers, close) == numbers.end();
}

}  // namespace

void Compiler::block() {
    need(Word::LeftBrace, "{");
    while (!at(Word::RightBrace) && token().k != TK::End) statement();
    need(Word::RightBrace, "}");
}

void Compiler::statement() {
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

Compiler::Operand Compiler::condition() {
    need(Word::LeftParen, "(");
    const Operand value = expression(0);
    need(Word::RightParen, ")");
    return value;
}

// A chain of "else if" is one loop here, however long it is.
void Compiler::ifStatement() {
    std::vector<std::int32_t> ends;
    const std::size_t known = locals_.mark();
    for (;;) {
        ++pos_;
        const std::int32_t otherwise = jumpIfFalse(condition());
        statement();
        locals_.unsure(known);
        const bool more = accept(Word::Else);
        if (more) ends.push_back(openJump(Op::Jump));
        land(otherwise);
        if (more && at(Word::If)) continue;
        if (more) statement();
        break;
    }
    locals_.unsure(known);
    while (!ends.empty()) {
        land(ends.back());
        ends.pop_back();
    }
}

std::int32_t Compiler::beginLoop() {
    const std::int32_t counter = counters_++;
    fn_.counters = std::max(fn_.counters, static_cast<std::size_t>(counters_));
    return counter;
}

void Compiler::loopBack(std::int32_t counter, std::int32_t top) {
    if (last() != nullptr && last()->op == Op::SumK) last()->op = backOf(*last(), instr(top));
    emitWide(Op::LoopBack, static_cast<std::uint16_t>(counter), static_cast<std::size_t>(top));
}

std::int32_t Compiler::entryOf(std::int32_t jump) const {
    const bool tested = jump > 0 && isTest(fn_.code[static_cast<std::size_t>(jump) - 1].op);
    return tested ? jump - 1 : jump;
}

// The body ends here. A loop's round goes on at `continueTo`, code that is still to come.
Compiler::Scope Compiler::closeScope(std::size_t& range) {
    Scope scope = std::move(scopes_.back());
    scopes_.pop_back();
    range = fn_.ranges.size();
    fn_.ranges.push_back({scope.begin, here(), 0, scope.loop ? label() : -1});
    for (const std::int32_t jump : scope.continues) lead(jump, here());
    return scope;
}

void Compiler::finishScope(const Scope& scope, std::size_t range) {
    fn_.ranges[range].breakTo = label();
    for (const std::int32_t jump : scope.breaks) lead(jump, here());
}

// The condition is evaluated once, then the body skipped to learn its end: a broken body is an
// error even if the condition is false.
void Compiler::whileStatement() {
    const std::int32_t counter = beginLoop();
    const std::size_t conditionAt = ++pos_;
    const std::int32_t leave = jumpIfFalse(condition());
    entries_.push_back(entryOf(leave));
    emit({Op::LoopBegin, Word::None, static_cast<std::uint16_t>(counter)});
    openScope(true);
    const std::int32_t top = here();
    const std::size_t known = locals_.mark();
    statement();
    locals_.unsure(known);
    const std::size_t end = pos_;
    std::size_t range = 0;
    const Scope scope = closeScope(range);
    pos_ = conditionAt;
    const std::int32_t stop = jumpIfFalse(condition());
    loopBack(counter, top);
    pos_ = end;
    entries_.pop_back();
    land(stop);
    land(leave);
    finishScope(scope, range);
    --counters_;
}

void Compiler::doStatement() {
    const std::int32_t counter = beginLoop();
    ++pos_;
    entries_.push_back(emit({Op::LoopBegin, Word::None, static_cast<std::uint16_t>(counter)}));
    openScope(true);
    const std::int32_t top = here();
    const std::size_t known = locals_.mark();
    statement();
    locals_.unsure(known);
    std::size_t range = 0;
    const Scope scope = closeScope(range);
    if (!accept(Word::While)) throw SyntaxError("expected while after do");
    const std::int32_t stop = jumpIfFalse(condition());
    loopBack(counter, top);
    accept(Word::Semicolon);
    entries_.pop_back();
    land(stop);
    finishScope(scope, range);
    --counters_;
}

// The condition is evaluated once ahead of the loop and again at the head of each round.
void Compiler::forStatement() {
    const std::int32_t counter = beginLoop();
    ++pos_;
    need(Word::LeftParen, "(");
    simpleClause(Word::Semicolon, ";");
    const std::size_t conditionAt = pos_;
    const bool conditional = !at(Word::Semicolon);
    Operand test;
    if (conditional) test = expression(0);
    need(Word::Semicolon, ";");
    std::vector<std::int32_t> leaves;
    if (conditional) leaves.push_back(jumpIfFalse(test));
    const std::int32_t begin =
        emit({Op::LoopBegin, Word::None, static_cast<std::uint16_t>(counter)});
    entries_.push_back(conditional ? entryOf(leaves[0]) : begin);
    const std::size_t incrementAt = pos_;
    skip([&] { simpleClause(Word::RightParen, ")"); });
    const std::size_t bodyAt = pos_;
    const std::int32_t top = label();
    if (conditional) {
        pos_ = conditionAt;
        leaves.push_back(jumpIfFalse(expression(0)));
    }
    pos_ = bodyAt;
    openScope(true);
    const std::size_t known = locals_.mark();
    statement();
    locals_.unsure(known);
    const std::size_t end = pos_;
    std::size_t range = 0;
    const Scope scope = closeScope(range);
    pos_ = incrementAt;
    simpleClause(Word::RightParen, ")");
    locals_.unsure(known);
    loopBack(counter, top);
    pos_ = end;
    entries_.pop_back();
    for (const std::int32_t leave : leaves) land(leave);
    finishScope(scope, range);
    --counters_;
}

void Compiler::simpleClause(Word terminator, const char* spelling) {
    if (!at(terminator)) simpleStatement();
    need(terminator, spelling);
}

// break and continue. Outside any loop they leave the function, to a loop of its callers.
void Compiler::leaveStatement() {
    const bool breaks = token().word == Word::Break;
    ++pos_;
    accept(Word::Semicolon);
    const auto scope = std::find_if(scopes_.rbegin(), scopes_.rend(),
                                    [&](const Scope& s) { return breaks || s.loop; });
    if (scope == scopes_.rend()) {
        emit({breaks ? Op::EscapeBreak : Op::EscapeContinue});
    } else {
        (breaks ? scope->breaks : scope->continues).push_back(emit({Op::Jump}));
    }
}

void Compiler::returnStatement() {
    ++pos_;
    if (at(Word::Semicolon)) {
        emit({Op::ReturnEmpty});
    } else {
        Operand value = expression(0);
        const std::uint16_t place = inRegister(value);
        drop(value);
        emit({Op::Return, Word::None, place});
    }
    accept(Word::Semicolon);
}

// One part, or several declarations in turn.
void Compiler::simpleStatement() {
    const bool declared = token().k == TK::Id && accept(Word::TypeName);
    simplePart(declared);
    while (declared && at(Word::Comma) && mends(ScriptMend::Declarators)) {
        ++pos_;
        simplePart(true);
    }
}

// A declaration, an assignment, a step or an expression whose value is dropped.
void Compiler::simplePart(bool declared) {
    const Tok name = token();
    pass(name);
    const Word next = token(1).k == TK::Sym ? token(1).word : Word::None;
    if (name.k != TK::Id) return dropped();
    if (isAssignment(next)) {
        const std::int32_t id = program_.names.id(name.s);
        pos_ += 2;
        const Operand value = expression(0);
        if (next == Word::Assign) return store(id, value, declared);
        return update(id, plainOperator(next), value, declared);
    }
    if (next == Word::Increment || next == Word::Decrement) {
        pos_ += 2;
        const Word op = next == Word::Increment ? Word::Add : Word::Sub;
        return update(program_.names.id(name.s), op, number(1.0), declared);
    }
    if (!declared || next == Word::LeftParen) return dropped();
    ++pos_;
    store(program_.names.id(name.s), number(0.0), true);
}

void Compiler::dropped() {
    drop(expression(0));
}

// --- switch

void Compiler::switchStatement() {
    const std::int32_t counter = beginLoop();
    ++pos_;
    Operand key = condition();
    if (copiesOperands_) key = inTemporary(key);
    need(Word::LeftBrace, "{");
    const std::uint16_t place = inRegister(key);
    const std::int32_t begin =
        emit({Op::SwitchBegin, Word::None, static_cast<std::uint16_t>(counter)});
    const Labels labels = scanLabels(place, counter);
    drop(key);
    // Labels that are constant numbers left no code between: the key is looked up among them.
    const bool numbers = apart(labels.numbers) && labels.numbers.size() == labels.cases.size();
    if (numbers) fn_.code.resize(static_cast<std::size_t>(begin));
    const std::size_t index = fn_.switches.size();
    fn_.switches.emplace_back();
    entries_.push_back(numbers
                           ? emitWide(Op::SwitchNumber, place, index)
                           : emitWide(Op::SwitchJump, static_cast<std::uint16_t>(counter), index));
    --counters_;
    SwitchTable table;
    switchBodies(labels, table);
    if (numbers) {
        for (std::size_t i = 0; i < labels.numbers.size(); ++i) {
            table.numbers.emplace_back(labels.numbers[i], table.targets[i]);
        }
        std::ranges::sort(table.numbers);
    }
    fn_.switches[index] = std::move(table);
    entries_.pop_back();
    pos_ = labels.end + 1;
}

// Every label is evaluated, also those behind the match. Braces count by text, so that a
// constant that is nothing but a brace counts too.
Compiler::Labels Compiler::scanLabels(std::uint16_t key, std::int32_t counter) {
    Labels labels;
    for (int depth = 1;; ++pos_) {
        pass(token());
        if (token().k == TK::End) need(Word::RightBrace, "}");
        if (token().word == Word::LeftBrace) ++depth;
        if (token().word == Word::RightBrace && --depth == 0) break;
        if (depth == 1 && token().word == Word::Case) {
            ++pos_;
            Operand label = expression(0);
            if (!at(Word::Colon)) need(Word::Colon, ":");
            if (const double* const number = numberOf(label)) labels.numbers.push_back(*number);
            const std::uint16_t place = inRegister(label);
            drop(label);
            emit({Op::CaseTest, Word::None, key, place, static_cast<std::uint16_t>(counter)});
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
void Compiler::switchBodies(const Labels& labels, SwitchTable& table) {
    std::map<std::size_t, std::int32_t> places;
    std::vector<std::int32_t> ends;
    openScope(false);
    const auto place = [&](std::size_t target) {
        if (!places.contains(target)) {
            switchStatements(target, labels.end, places);
            ends.push_back(openJump(Op::Jump));
        }
        return places[target];
    };
    for (const std::size_t target : labels.cases) table.targets.push_back(place(target));
    const std::int32_t otherwise = labels.otherwise != 0 ? place(labels.otherwise) : -1;
    std::size_t range = 0;
    const Scope scope = closeScope(range);
    while (!ends.empty()) {
        land(ends.back());
        ends.pop_back();
    }
    finishScope(scope, range);
    table.otherwise = otherwise >= 0 ? otherwise : here();
}

// Other ways lead to each statement here: what one declares is not sure for the next.
void Compiler::switchStatements(std::size_t from, std::size_t end,
                                std::map<std::size_t, std::int32_t>& places) {
    const Mark start = mark();
    const std::size_t sure = locals_.mark();
    pos_ = from;
    places[from] = label();
    try {
        while (pos_ < end) {
            if (at(Word::Case)) {
                ++pos_;
                skip([&] { drop(expression(0)); });
                need(Word::Colon, ":");
            } else if (accept(Word::Default)) {
                need(Word::Colon, ":");
            } else {
                statement();
                locals_.unsure(sure);
            }
            const auto [known, added] = places.try_emplace(pos_, label());
            if (!added) {
                emitWide(Op::Jump, 0, static_cast<std::size_t>(known->second));
                return;
            }
        }
    } catch (const SyntaxError& error) {
        // The walk over the whole switch does not come here: only running does.
        if (exhausted_) throw;
        locals_.unsure(sure);
        breakOff(start, error.what());
    }
}

}  // namespace port::script
