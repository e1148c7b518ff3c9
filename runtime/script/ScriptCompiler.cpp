#include "ScriptCompiler.hpp"

#include <algorithm>
#include <bit>
#include <string>
#include <utility>

#include "ScriptLimits.hpp"

namespace port::script {
namespace {

constexpr const char* kTooLarge = "script function too large";
constexpr const char* kTooManyVariables = "too many script variables";

// Whether R[a] is what the instruction makes, and nothing else.
constexpr bool makesValue(Op op) {
    switch (op) {
        case Op::Move:
        case Op::Constant:
        case Op::LoadName:
        case Op::LoadMaybe:
        case Op::Prefix:
            return true;
        default:
            return op >= Op::Add && op <= Op::BinaryK;
    }
}

}  // namespace

// A name that is used ahead of its declaration shows only once the declaration has come, and so
// does a step behind an operand that waits: then the function is compiled again.
std::size_t compile(Function& function, ScriptHost* host, bool asWritten) {
    Compiler first(function, host, asWritten, {});
    first.run();
    std::size_t work = first.work();
    const Compiler::Known known{first.maybes(), first.stepsLocals()};
    if (!known.maybes.empty() || known.stepsLocals) {
        function.forget();
        Compiler second(function, host, asWritten, known);
        second.run();
        work += second.work();
    }
    function.names = function.program->names.size();
    function.cost = function.code.size() + function.registers;
    function.compiled = true;
    return work;
}

void Compiler::run() {
    pos_ = fn_.body;
    const Mark start = mark();
    try {
        if (fn_.params.size() > kMaxVariables) throw SyntaxError(kTooManyVariables);
        fn_.bound = top_ = fn_.params.size();
        fn_.registers = std::max<std::size_t>(1, top_);
        for (std::size_t i = 0; i < top_; ++i) {
            if (fn_.params[i].empty()) continue;
            locals_.bind(program_.names.id(fn_.params[i]), static_cast<std::uint16_t>(i));
        }
        for (const std::int32_t name : locals_.maybes()) {
            fn_.maybes.push_back({declare(name), name});
        }
        block();
    } catch (const SyntaxError& error) {
        breakOff(start, error.what());
    }
    fn_.code.push_back({Op::ReturnEmpty});
}

Compiler::Nested::Nested(Compiler& owner) : compiler(owner) {
    if (compiler.nesting_ == kMaxNesting) throw SyntaxError("script nesting limit exceeded");
    ++compiler.nesting_;
}

void Compiler::need(Word word, const char* spelling) {
    if (accept(word)) return;
    throw SyntaxError(std::string("expected ") + spelling + " near '" + std::string(token().s) +
                      "'");
}

// --- Code

std::int32_t Compiler::emit(Instr instr) {
    if (fn_.code.size() >= kMaxCode) tooLarge();
    fn_.code.push_back(instr);
    return here() - 1;
}

std::int32_t Compiler::emitWide(Op op, std::uint16_t a, std::size_t wide, Word word) {
    Instr instr{op, word, a};
    instr.setWide(wide);
    return emit(instr);
}

std::int32_t Compiler::openJump(Op op, std::uint16_t a) {
    open_.push_back(emit({op, Word::None, a}));
    return open_.back();
}

void Compiler::land(std::int32_t jump) {
    open_.erase(std::find(open_.rbegin(), open_.rend(), jump).base() - 1);
    lead(jump, label());
}

// The rest of what was begun since `from` cannot be had: all that leads there throws instead.
void Compiler::breakOff(const Mark& from, const std::string& message) {
    const auto error = static_cast<std::int32_t>(fn_.errors.size());
    errorBytes_ += message.size();
    fn_.errors.push_back(errorBytes_ <= kMaxText ? message : kTooLarge);
    fn_.errorTokens.push_back(std::min(pos_, tokens_.size() - 1));
    const std::int32_t thrower = label();
    Instr thrown{Op::Throw};
    thrown.setWide(static_cast<std::size_t>(error));
    fn_.code.push_back(thrown);
    for (; open_.size() > from.open; open_.pop_back()) lead(open_.back(), thrower);
    for (; entries_.size() > from.entries; entries_.pop_back()) instr(entries_.back()) = thrown;
    for (; scopes_.size() > from.scopes; scopes_.pop_back()) {
        for (const std::int32_t jump : scopes_.back().breaks) lead(jump, thrower);
        for (const std::int32_t jump : scopes_.back().continues) lead(jump, thrower);
    }
    counters_ = from.counters;
    top_ = locals();
}

void Compiler::tooLarge() {
    exhausted_ = true;
    throw SyntaxError(kTooLarge);
}

// --- Registers

std::uint16_t Compiler::temporary() {
    const auto place = static_cast<std::uint16_t>(top_++);
    fn_.registers = std::max(fn_.registers, top_);
    return place;
}

std::uint16_t Compiler::inRegister(Operand& operand) {
    if (operand.kind == Operand::Kind::Constant) operand = inTemporary(operand);
    return operand.index;
}

Compiler::Operand Compiler::inTemporary(const Operand& operand) {
    if (operand.kind == Operand::Kind::Temporary) return operand;
    const std::uint16_t place = temporary();
    moveTo(place, operand);
    return {Operand::Kind::Temporary, place};
}

// The instruction that made a temporary can as well leave its value where it is wanted.
void Compiler::moveTo(std::uint16_t place, const Operand& operand) {
    if (operand.kind == Operand::Kind::Constant) {
        emitWide(Op::Constant, place, operand.index);
        return;
    }
    if (operand.index == place) return;
    Instr* const maker = last();
    if (operand.kind == Operand::Kind::Temporary && maker != nullptr && makesValue(maker->op) &&
        maker->a == operand.index) {
        maker->a = place;
    } else {
        emit({Op::Move, Word::None, place, operand.index});
    }
}

std::uint16_t Compiler::constant(ScriptValue value) {
    const auto place = static_cast<std::uint16_t>(fn_.constants.size());
    const auto* const number = std::get_if<double>(&value);
    const auto* const text = std::get_if<ScriptText>(&value);
    if (number != nullptr) {
        const auto [known, added] =
            numbers_.try_emplace(std::bit_cast<std::uint64_t>(*number), place);
        if (!added) return known->second;
    } else if (text != nullptr) {
        const auto [known, added] = texts_.try_emplace(text->str(), place);
        if (!added) return known->second;
    }
    if (fn_.constants.size() == kMaxOperands) tooLarge();
    fn_.constants.push_back(std::move(value));
    return place;
}

const double* Compiler::numberOf(const Operand& operand) const {
    return operand.kind == Operand::Kind::Constant
               ? std::get_if<double>(&fn_.constants[operand.index])
               : nullptr;
}

// --- Variables

// Its register is the next one: between statements no temporary is in use.
std::uint16_t Compiler::declare(std::int32_t name) {
    if (const auto* const known = locals_.find(name)) return *known;
    if (locals() >= kMaxVariables) throw SyntaxError(kTooManyVariables);
    const std::uint16_t place = temporary();
    locals_.declare(name, place);
    return place;
}

std::int32_t Compiler::maybe(std::int32_t name) {
    locals_.doubt(name);
    return locals_.maybe(name);
}

Compiler::Operand Compiler::load(std::int32_t name) {
    if (const auto* const local = locals_.sure(name)) return {Operand::Kind::Local, *local};
    const std::int32_t known = maybe(name);
    const std::uint16_t place = temporary();
    if (known >= 0) {
        emitWide(Op::LoadMaybe, place, static_cast<std::size_t>(known));
    } else {
        emitWide(Op::LoadName, place, static_cast<std::size_t>(name));
    }
    return {Operand::Kind::Temporary, place};
}

void Compiler::store(std::int32_t name, Operand value, bool declared) {
    const std::uint16_t* const local = locals_.sure(name);
    if (declared) {
        drop(value);
        // Where the value is in the next free register, that one is the name's from now on.
        moveTo(declare(name), value);
        ensure(name);
    } else if (local != nullptr) {
        moveTo(*local, value);
        drop(value);
    } else {
        const std::uint16_t from = inRegister(value);
        const std::int32_t known = maybe(name);
        if (known >= 0) {
            emitWide(Op::StoreMaybe, from, static_cast<std::size_t>(known));
        } else {
            emitWide(Op::StoreName, from, static_cast<std::size_t>(name));
        }
        drop(value);
    }
}

// The name is declared from here on.
void Compiler::ensure(std::int32_t name) {
    if (!locals_.ensure(name)) return;
    const std::int32_t known = locals_.maybe(name);
    if (known >= 0) emitWide(Op::Declare, 0, static_cast<std::size_t>(known));
}

// `op` is the assignment without its '='.
void Compiler::update(std::int32_t name, Word op, Operand right, bool declared) {
    const std::uint16_t* const local = locals_.sure(name);
    if (local != nullptr) {
        const std::uint16_t place = *local;
        drop(right);
        emitBinary(op, true, place, place, right);
    } else if (declared) {
        Operand value = inTemporary(right);
        const Operand before = load(name);
        drop(before);
        emitBinary(op, true, value.index, before.index, value);
        store(name, value, true);
    } else {
        const std::uint16_t from = inRegister(right);
        const std::int32_t known = maybe(name);
        if (known >= 0) {
            emitWide(Op::UpdateMaybe, from, static_cast<std::size_t>(known), op);
        } else {
            emitWide(Op::UpdateName, from, static_cast<std::size_t>(name), op);
        }
        drop(right);
    }
}

}  // namespace port::script
