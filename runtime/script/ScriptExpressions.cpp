// Operators, constants, variables and calls.

#include "ScriptBuiltins.hpp"
#include "ScriptCompiler.hpp"
#include "ScriptLimits.hpp"
#include "ScriptOperators.hpp"
#include "ScriptValue.hpp"

namespace port::script {
namespace {

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

}  // namespace

void Compiler::expression(int least) {
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

void Compiler::conditional() {
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

void Compiler::binary(Word op) {
    Instr* const right = last();
    if (right != nullptr && right->op == Op::Number) {
        *right = {Op::BinaryNumber, op, false, 0, 0, right->number};
        adjust(-1);
    } else {
        emit({Op::Binary, op}, -1);
    }
}

// Takes the comparison before it into itself.
std::int32_t Compiler::jumpIfFalse() {
    Instr* const test = last();
    const bool fuses = test != nullptr && isComparison(test->word) &&
                       (test->op == Op::Binary || test->op == Op::BinaryNumber);
    if (!fuses) return openJump({Op::JumpIfFalse}, -1);
    test->op = test->op == Op::Binary ? Op::JumpUnless : Op::JumpUnlessNumber;
    adjust(-1);
    open_.push_back(here() - 1);
    return open_.back();
}

void Compiler::unary() {
    const Nested nested(*this);
    const Word op = token().k == TK::Sym ? token().word : Word::None;
    if (op != Word::Not && op != Word::Tilde && op != Word::Sub && op != Word::Add) {
        return primary();
    }
    ++pos_;
    unary();
    emit({Op::Unary, op}, 0);
}

void Compiler::primary() {
    const Tok& first = token();
    pass(first);
    if (first.k == TK::Id) return name();
    if (first.k == TK::Num) {
        emit({Op::Number, Word::None, false, 0, 0, literalNumber(std::string(first.s))}, 1);
        ++pos_;
    } else if (first.k == TK::Str) {
        emit({Op::Text, Word::None, false, static_cast<std::int32_t>(fn_.texts.size())}, 1);
        fn_.texts.emplace_back(ScriptText(first.s));
        ++pos_;
    } else if (accept(Word::LeftParen)) {
        expression(0);
        need(Word::RightParen, ")");
    } else {
        throw SyntaxError("unexpected token " + std::string(first.s));
    }
}

void Compiler::name() {
    const Tok name = token();
    ++pos_;
    if (accept(Word::LeftParen)) return call(name.s);
    if (name.word == Word::True || name.word == Word::False) {
        emit({Op::Truth, Word::None, false, name.word == Word::True ? 1 : 0}, 1);
    } else {
        emit({Op::LoadName, Word::None, false, -1, program_.names.id(name.s)}, 1);
    }
}

void Compiler::call(std::string_view name) {
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
    const HostFunction* const host =
        user != nullptr || host_ == nullptr ? nullptr : host_->findHostFunction(folded);
    fn_.sites.push_back(
        {builtin, user, host, &program_.names.text(program_.names.id(name)), count});
}

}  // namespace port::script
