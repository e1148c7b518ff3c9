// Operators, constants, variables and calls.

#include <utility>

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

// An operator that has an instruction of its own.
struct Own {
    Op registers;
    Op constant;
};

// `plain`: texts are numbers, and not joined.
Own ownOperator(Word op, bool plain) {
    switch (op) {
        case Word::Add:
            return plain ? Own{Op::Sum, Op::SumK} : Own{Op::Add, Op::AddK};
        case Word::Sub:
            return {Op::Sub, Op::SubK};
        case Word::Mul:
            return {Op::Mul, Op::MulK};
        case Word::Div:
            return {Op::Div, Op::DivK};
        default:
            return {Op::Binary, Op::BinaryK};
    }
}

// The test of a comparison; the greater ones are the less ones the other way round.
Op testOf(Word op, bool constant) {
    switch (op) {
        case Word::Equal:
            return constant ? Op::EqualK : Op::Equal;
        case Word::NotEqual:
            return constant ? Op::NotEqualK : Op::NotEqual;
        case Word::Less:
            return constant ? Op::LessK : Op::Less;
        case Word::LessEqual:
            return constant ? Op::LessEqualK : Op::LessEqual;
        case Word::Greater:
            return constant ? Op::GreaterK : Op::Less;
        default:
            return constant ? Op::GreaterEqualK : Op::LessEqual;
    }
}

}  // namespace

Compiler::Operand Compiler::expression(int least) {
    Operand left = unary();
    for (;;) {
        const Word op = token().k == TK::Sym ? token().word : Word::None;
        const int binding = level(op);
        if (binding == 0 || binding < least) break;
        ++pos_;
        if (op == Word::AndAnd || op == Word::OrOr) {
            left = logical(op, binding, left);
        } else {
            left = copiesOperands_ ? inTemporary(left) : left;
            inRegister(left);
            const Operand right = expression(binding + 1);
            left = binary(op, left, right);
        }
    }
    // Only at the outermost level: no bare operand of an operator.
    if (least == 0 && accept(Word::Question)) return conditional(left);
    return left;
}

// Both sides leave their truth in the same register; the right one is passed over if the left one
// decides.
Compiler::Operand Compiler::logical(Word op, int binding, Operand left) {
    const auto truthOf = [&](Operand value) {
        const std::uint16_t from = inRegister(value);
        drop(value);
        const std::uint16_t to = temporary();
        emit({Op::Truth, Word::None, to, from});
        return Operand{Operand::Kind::Temporary, to};
    };
    const Operand first = truthOf(left);
    const std::int32_t decided =
        openJump(op == Word::AndAnd ? Op::JumpIfFalse : Op::JumpIfTrue, first.index);
    drop(first);
    const Operand second = truthOf(expression(binding + 1));
    land(decided);
    return second;
}

Compiler::Operand Compiler::conditional(const Operand& test) {
    const Nested nested(*this);
    const std::int32_t otherwise = jumpIfFalse(test);
    drop(inTemporary(expression(0)));
    need(Word::Colon, ":");
    const std::int32_t end = openJump(Op::Jump);
    land(otherwise);
    const Operand value = inTemporary(expression(0));
    land(end);
    return value;
}

Compiler::Operand Compiler::binary(Word op, Operand left, Operand right) {
    drop(right);
    drop(left);
    const std::uint16_t to = temporary();
    emitBinary(op, false, to, left.index, right);
    return {Operand::Kind::Temporary, to};
}

void Compiler::emitBinary(Word op, bool plain, std::uint16_t to, std::uint16_t left,
                          Operand right) {
    const Own own = ownOperator(op, plain);
    const bool constant = right.kind == Operand::Kind::Constant;
    emit({constant ? own.constant : own.registers, op, to, left, right.index});
}

// Takes the comparison that made the value into itself.
std::int32_t Compiler::jumpIfFalse(Operand test) {
    Instr* const made = last();
    const bool fuses = test.kind == Operand::Kind::Temporary && made != nullptr &&
                       made->a == test.index && isComparison(made->word) &&
                       (made->op == Op::Binary || made->op == Op::BinaryK);
    const std::uint16_t place = fuses ? 0 : inRegister(test);
    drop(test);
    if (!fuses) return openJump(Op::JumpIfFalse, place);
    const bool constant = made->op == Op::BinaryK;
    const bool turned =
        !constant && (made->word == Word::Greater || made->word == Word::GreaterEqual);
    const Op asked = testOf(made->word, constant);
    if (turned) {
        const Word word = made->word == Word::Greater ? Word::Less : Word::LessEqual;
        *made = {asked, word, made->c, made->b};
    } else {
        *made = {asked, made->word, made->b, made->c};
    }
    return openJump(Op::Jump);
}

Compiler::Operand Compiler::unary() {
    const Nested nested(*this);
    const Word op = token().k == TK::Sym ? token().word : Word::None;
    if (op != Word::Not && op != Word::Tilde && op != Word::Sub && op != Word::Add) {
        return primary();
    }
    ++pos_;
    Operand value = unary();
    const double* const known = numberOf(value);
    if (known != nullptr && op == Word::Sub) return number(-*known);
    const std::uint16_t from = inRegister(value);
    drop(value);
    const std::uint16_t to = temporary();
    emit({Op::Prefix, op, to, from});
    return {Operand::Kind::Temporary, to};
}

Compiler::Operand Compiler::primary() {
    const Tok& first = token();
    pass(first);
    if (first.k == TK::Id) return name();
    if (first.k == TK::Num) {
        ++pos_;
        return number(literalNumber(std::string(first.s)));
    }
    if (first.k == TK::Str) {
        ++pos_;
        return {Operand::Kind::Constant, constant(program_.names.constant(first.s))};
    }
    if (!accept(Word::LeftParen)) throw SyntaxError("unexpected token " + std::string(first.s));
    const Operand value = expression(0);
    need(Word::RightParen, ")");
    return value;
}

Compiler::Operand Compiler::name() {
    const Tok name = token();
    ++pos_;
    if (accept(Word::LeftParen)) return call(name.s);
    if (name.word == Word::True || name.word == Word::False) {
        return {Operand::Kind::Constant, constant(name.word == Word::True)};
    }
    const std::int32_t id = program_.names.id(name.s);
    return atStep() && mends(ScriptMend::Step) ? stepped(id) : load(id);
}

// A "++" or "--" behind a name, and not in front of another operand.
bool Compiler::atStep() const {
    if (!at(Word::Increment) && !at(Word::Decrement)) return false;
    const Tok& next = token(1);
    return (next.k == TK::Sym || next.k == TK::End) && !next.is(Word::LeftParen);
}

// The value before the step.
Compiler::Operand Compiler::stepped(std::int32_t name) {
    const Word op = at(Word::Increment) ? Word::Add : Word::Sub;
    ++pos_;
    stepsLocals_ = stepsLocals_ || locals_.sure(name) != nullptr;
    const Operand before = inTemporary(load(name));
    update(name, op, number(1.0), false);
    return before;
}

// The arguments stand one behind the other, each in a register of its own.
Compiler::Operand Compiler::call(std::string_view name) {
    const auto base = static_cast<std::uint16_t>(top_);
    const std::int32_t begin = here();
    std::vector<ScriptValue> constants;  // the arguments; those that are none are empty
    if (!at(Word::RightParen)) {
        do {
            if (constants.size() == kMaxArguments) throw SyntaxError("too many arguments");
            const Operand argument = expression(0);
            const bool known = argument.kind == Operand::Kind::Constant;
            constants.push_back(known ? fn_.constants[argument.index] : ScriptValue());
            inTemporary(argument);
        } while (accept(Word::Comma));
    }
    need(Word::RightParen, ")");
    const std::size_t count = constants.size();
    const std::string folded = lower(name);
    const Builtin* const builtin = findBuiltin(folded, count);
    Function* const user = program_.find(folded);
    HostTarget host;
    if (user == nullptr && host_ != nullptr) host.function = host_->findHostFunction(folded);
    if (builtin == nullptr && host.function != nullptr) {
        ScriptValue always = host_->resolveCall(host, constants);
        if (always.index() != 0) {
            // Nothing but the constants has been loaded since.
            fn_.code.resize(static_cast<std::size_t>(begin));
            top_ = base;
            return {Operand::Kind::Constant, constant(std::move(always))};
        }
    }
    const Op op = builtin != nullptr ? Op::CallBuiltin
                  : user != nullptr  ? Op::CallUser
                                     : Op::CallHost;
    emitWide(op, base, fn_.sites.size());
    fn_.sites.push_back(
        {builtin, user, host, &program_.names.text(program_.names.id(name)), count});
    top_ = base;
    return {Operand::Kind::Temporary, temporary()};
}

}  // namespace port::script
