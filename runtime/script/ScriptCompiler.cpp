#include "ScriptCompiler.hpp"

#include <algorithm>
#include <string>

#include "ScriptLimits.hpp"

namespace port::script {
namespace {

constexpr const char* kTooLarge = "script function too large";

}  // namespace

std::size_t compile(Function& function) {
    return Compiler(function).run();
}

std::size_t Compiler::run() {
    pos_ = fn_.body;
    const Mark start = mark();
    try {
        for (const std::string& name : fn_.params) {
            fn_.paramSlots.push_back(name.empty() ? -1 : slotOf(program_.names.id(name)));
        }
        block();
    } catch (const SyntaxError& error) {
        breakOff(start, error.what());
    }
    fn_.code.push_back({Op::ReturnEmpty});
    settleNames();
    fn_.compiled = true;
    return scanned_ + fn_.code.size();
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

std::int32_t Compiler::emit(Instr instr, int stack) {
    if (fn_.code.size() >= kMaxCode) tooLarge();
    fn_.code.push_back(instr);
    adjust(stack);
    return here() - 1;
}

void Compiler::adjust(int stack) {
    stack_ += static_cast<std::size_t>(stack);
    fn_.maxStack = std::max(fn_.maxStack, stack_);
}

std::int32_t Compiler::openJump(Instr jump, int stack) {
    open_.push_back(emit(jump, stack));
    return open_.back();
}

void Compiler::land(std::int32_t jump) {
    open_.erase(std::find(open_.rbegin(), open_.rend(), jump).base() - 1);
    instr(jump).a = label();
}

// The rest of what was begun since `from` cannot be had: all that leads there throws instead.
void Compiler::breakOff(const Mark& from, const std::string& message) {
    const auto error = static_cast<std::int32_t>(fn_.errors.size());
    errorBytes_ += message.size();
    fn_.errors.push_back(errorBytes_ <= kMaxText ? message : kTooLarge);
    fn_.errorTokens.push_back(std::min(pos_, tokens_.size() - 1));
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

void Compiler::tooLarge() {
    exhausted_ = true;
    throw SyntaxError(kTooLarge);
}

// --- Variables

std::int32_t Compiler::slotOf(std::int32_t name) {
    const auto [slot, added] = slots_.try_emplace(name, static_cast<std::int32_t>(fn_.slots));
    if (added && ++fn_.slots > kMaxVariables) throw SyntaxError("too many script variables");
    return slot->second;
}

void Compiler::settleNames() {
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

void Compiler::store(std::int32_t name, bool declared) {
    if (declared) {
        emit({Op::DeclareSlot, Word::None, true, slotOf(name), name}, -1);
    } else {
        emit({Op::StoreName, Word::None, false, -1, name}, -1);
    }
}

// `op` is the assignment without its '='; the right side is on the stack.
void Compiler::update(std::int32_t name, Word op, bool declared) {
    if (declared) slotOf(name);
    emit({Op::UpdateName, op, declared, -1, name}, -1);
}

}  // namespace port::script
