#include "ScriptExec.hpp"

#include <algorithm>
#include <span>
#include <stdexcept>
#include <utility>

#include "ScriptBuiltins.hpp"
#include "ScriptLimits.hpp"
#include "ScriptOperators.hpp"
#include "ScriptValue.hpp"

namespace port::script {
namespace {

// The counter of a switch that no label has matched.
constexpr std::int32_t kNoMatch = -1;

// Whether a condition that leaves the stack holds.
bool spend(ScriptValue& value) {
    const bool met = holds(value);
    release(value);
    return met;
}

}  // namespace

void Exec::begin(ScriptHost* host, ScriptContext& context, UnansweredNames& unsupported) {
    host_ = host;
    context_ = &context;
    unsupported_ = &unsupported;
    forgetVariables();
}

void Exec::call(Function& function) {
    try {
        enter(function, 0, 0);
        run();
    } catch (...) {
        reset();
        throw;
    }
}

// The heart: one instruction a turn.
void Exec::run() {
    Registers r = registers();
    for (;;) {
        const Instr& i = *r.ip++;
        switch (i.op) {
            case Op::Number:
                put(*r.top++, i.number);
                break;
            case Op::Text:
                copy(*r.top++, r.function->texts[static_cast<std::size_t>(i.a)]);
                break;
            case Op::Truth:
                putTruth(*r.top++, i.a != 0);
                break;
            case Op::LoadSlot:
                if (!r.slots[i.a].present) {
                    load(i.b, *r.top++);
                } else {
                    copy(*r.top++, r.slots[i.a].value);
                }
                break;
            case Op::LoadName:
                load(i.b, *r.top++);
                break;
            case Op::StoreSlot:
                if (!r.slots[i.a].present) {
                    store(i.b, *--r.top);
                } else {
                    take(r.slots[i.a].value, *--r.top);
                }
                break;
            case Op::StoreName:
                store(i.b, *--r.top);
                break;
            case Op::DeclareSlot:
                take(r.slots[i.a].value, *--r.top);
                r.slots[i.a].present = true;
                break;
            case Op::UpdateName:
                updateName(i, *--r.top);
                break;
            case Op::UpdateSlot:
                updateSlot(i, r.slots[i.a], *--r.top);
                break;
            case Op::Pop:
                release(*--r.top);
                break;
            case Op::Unary:
                chargeText(r.top[-1]);
                applyPrefix(i.word, r.top[-1]);
                break;
            case Op::Binary:
                --r.top;
                binary(i.word, r.top[-1], r.top[0]);
                release(r.top[0]);
                break;
            case Op::BinaryNumber:
                binaryNumber(i, r.top[-1]);
                break;
            case Op::ToTruth:
                putTruth(r.top[-1], holds(r.top[-1]));
                break;
            case Op::Jump:
                r.jump(i.a);
                break;
            case Op::JumpIfFalse:
                if (!spend(*--r.top)) r.jump(i.a);
                break;
            case Op::JumpUnless: {
                r.top -= 2;
                chargeText(r.top[0]);
                chargeText(r.top[1]);
                const bool met = compare(i.word, r.top[0], r.top[1]);
                release(r.top[0]);
                release(r.top[1]);
                if (!met) r.jump(i.a);
                break;
            }
            case Op::JumpUnlessNumber: {
                --r.top;
                const auto* left = std::get_if<double>(r.top);
                chargeText(*r.top);
                const bool met = left != nullptr ? compareNumbers(i.word, *left, i.number)
                                                 : compare(i.word, *r.top, i.number);
                release(*r.top);
                if (!met) r.jump(i.a);
                break;
            }
            case Op::AndJump:
            case Op::OrJump: {
                const bool decides = i.op == Op::OrJump;
                if (holds(r.top[-1]) == decides) {
                    putTruth(r.top[-1], decides);
                    r.jump(i.a);
                } else {
                    release(*--r.top);
                }
                break;
            }
            case Op::LoopBegin:
                r.counters[i.b] = 0;
                break;
            case Op::LoopBack:
                // At its limit a loop just goes on behind it.
                if (++r.counters[i.b] >= kMaxRounds) break;
                charge(static_cast<std::size_t>(r.ip - (r.code + i.a)));
                r.jump(i.a);
                break;
            case Op::SwitchBegin:
                r.counters[i.b] = kNoMatch;
                break;
            case Op::CaseTest:
                --r.top;
                chargeText(r.top[-1]);
                chargeText(r.top[0]);
                if (r.counters[i.b] == kNoMatch && eq(r.top[-1], r.top[0])) r.counters[i.b] = i.a;
                release(r.top[0]);
                break;
            case Op::SwitchJump: {
                release(*--r.top);
                const SwitchTable& table = r.function->switches[static_cast<std::size_t>(i.a)];
                const std::int32_t match = r.counters[i.b];
                r.jump(match == kNoMatch ? table.otherwise
                                         : table.targets[static_cast<std::size_t>(match)]);
                break;
            }
            case Op::CallBuiltin:
                r.top = callBuiltin(r.site(i), r.ip, r.top);
                if (r.top == nullptr) r = registers();
                break;
            case Op::CallUser:
                callUser(r.site(i), r.ip, r.top);
                r = registers();
                break;
            case Op::CallHost:
                r.top = callHost(r.site(i), r.ip, r.top);
                if (r.top == nullptr) r = registers();
                break;
            case Op::Return:
                if (!leave(*--r.top)) return;
                r = registers();
                break;
            case Op::ReturnEmpty: {
                ScriptValue none;
                if (!leave(none)) return;
                r = registers();
                break;
            }
            case Op::EscapeBreak:
            case Op::EscapeContinue:
                escape(i.op == Op::EscapeBreak, r.ip, r.top);
                r = registers();
                break;
            case Op::Throw:
                throw std::runtime_error(r.function->errors[static_cast<std::size_t>(i.a)]);
        }
    }
}

// --- Frames

Exec::Registers Exec::registers() {
    const Frame& frame = frames_.back();
    return {frame.function,
            frame.function->code.data(),
            frame.next,
            stack_.data() + frame.top,
            slots_.data() + frame.slots,
            counters_.data() + frame.counters};
}

// The arguments are the `count` values below stack place `top`; spare ones are dropped.
void Exec::enter(Function& function, std::size_t count, std::size_t top) {
    if (frames_.size() == kMaxCalls) throw std::runtime_error("script recursion limit exceeded");
    if (!function.compiled) charge(library_.compile(function));
    charge(function.code.size() + function.slots);
    Frame frame{&function, function.code.data(), 0, 0, top - count, top - count};
    if (!frames_.empty()) {
        const Frame& caller = frames_.back();
        frame.slots = caller.slots + caller.function->slots;
        frame.counters = caller.counters + caller.function->counters;
    }
    const auto grow = [](auto& values, std::size_t size) {
        if (values.size() < size) values.resize(std::max(size, 2 * values.size()));
    };
    grow(stack_, std::max(top, frame.stack + function.maxStack) + 1);
    grow(slots_, frame.slots + function.slots);
    grow(counters_, frame.counters + function.counters);
    grow(known_, names_.size());
    frames_.push_back(frame);
    for (std::size_t i = 0; i < function.paramSlots.size(); ++i) {
        if (function.paramSlots[i] < 0) continue;
        Slot& slot = slots_[frame.slots + static_cast<std::size_t>(function.paramSlots[i])];
        slot.present = true;
        if (i < count) {
            take(slot.value, stack_[frame.stack + i]);
        } else {
            slot.value.emplace<std::monostate>();
        }
    }
    for (std::size_t i = frame.stack; i < top; ++i) release(stack_[i]);
}

// False once the outermost function has returned. A value that was alone on the stack of its
// function already stands where the caller expects it.
bool Exec::leave(ScriptValue& value) {
    const std::size_t place = frames_.back().stack;
    if (&value != &stack_[place]) take(stack_[place], value);
    popFrame();
    if (frames_.empty()) {
        release(stack_[place]);
        return false;
    }
    frames_.back().top = place + 1;
    return true;
}

void Exec::popFrame() {
    const Frame& frame = frames_.back();
    for (std::size_t i = 0; i < frame.function->slots; ++i) {
        Slot& slot = slots_[frame.slots + i];
        release(slot.value);
        slot.present = false;
    }
    frames_.pop_back();
}

void Exec::reset() {
    while (!frames_.empty()) popFrame();
    for (ScriptValue& value : stack_) release(value);
}

// A break or continue that no loop of its function holds goes on in the nearest loop, or for a
// break switch, whose body made the call that it came from, directly or not.
void Exec::escape(bool breaks, const Instr* next, const ScriptValue* top) {
    const auto end = static_cast<std::size_t>(top - stack_.data());
    frames_.back().next = next;
    for (; !frames_.empty(); popFrame()) {
        Frame& frame = frames_.back();
        const auto from = static_cast<std::int32_t>(frame.next - frame.function->code.data()) - 1;
        for (const CatchRange& range : frame.function->ranges) {
            const std::int32_t to = breaks ? range.breakTo : range.continueTo;
            if (from < range.begin || from >= range.end || to < 0) continue;
            for (std::size_t i = frame.stack; i < end; ++i) release(stack_[i]);
            frame.next = frame.function->code.data() + to;
            frame.top = frame.stack;
            return;
        }
    }
    if (breaks) throw BreakSignal();
    throw ContinueSignal();
}

void Exec::outOfSteps() {
    throw std::runtime_error("script step limit exceeded");
}

// --- Calls

void Exec::callUser(const CallSite& site, const Instr* next, const ScriptValue* top) {
    frames_.back().next = next;
    enter(*site.user, site.count, static_cast<std::size_t>(top - stack_.data()));
}

// The new end of the values; null if the run goes on elsewhere: in a function of the script, or
// behind a loop.
ScriptValue* Exec::callBuiltin(const CallSite& site, const Instr* next, ScriptValue* top) {
    ScriptValue result;
    ScriptValue* const args = top - site.count;
    for (std::size_t i = 0; i < site.count; ++i) chargeText(args[i]);
    BuiltinCall call{*this, *context_, globals_, random_, {args, site.count}, result};
    if (!site.builtin->run(call)) {
        if (site.user == nullptr) return callHost(site, next, top);
        callUser(site, next, top);
        return nullptr;
    }
    for (ScriptValue& arg : call.args) release(arg);
    take(*args, result);
    return args + 1;
}

// A host may run further scripts. A break or continue that leaves such a run passes through the
// host and concerns the loops around the call.
ScriptValue* Exec::callHost(const CallSite& site, const Instr* next, ScriptValue* top) {
    const std::span<ScriptValue> args(top - site.count, site.count);
    const std::size_t noted = unsupported_->names().size();
    for (const ScriptValue& arg : args) chargeText(arg);
    ScriptValue result;
    bool answered = false;
    const auto leaveBy = [&](bool breaks) {
        forgetVariables();
        escape(breaks, next, top);
        return nullptr;
    };
    try {
        answered = site.host != nullptr &&
                   host_->callHostFunction(*site.host, args, *context_, *unsupported_, result);
    } catch (const BreakSignal&) {
        return leaveBy(true);
    } catch (const ContinueSignal&) {
        return leaveBy(false);
    }
    if (site.host != nullptr) forgetVariables();
    if (!answered) {
        result = {};
        unsupported_->add(*site.name);
    }
    charge(kEntrySteps * (unsupported_->names().size() - noted));
    for (ScriptValue& arg : args) release(arg);
    take(*args.data(), result);
    return args.data() + 1;
}

// --- Variables of the context

// Where the context holds the variable; null if it does not.
ScriptValue* Exec::find(std::int32_t name) {
    Known& known = known_[static_cast<std::size_t>(name)];
    if (known.epoch == epoch_) return known.value;
    const auto found = context_->local.find(names_.text(name));
    if (found == context_->local.end()) return nullptr;
    known = {epoch_, &found->second};
    return known.value;
}

void Exec::load(std::int32_t name, ScriptValue& to) {
    if (const ScriptValue* value = find(name)) return copy(to, *value);
    const std::string& text = names_.text(name);
    const auto global = globals_.find(text);
    if (global != globals_.end()) return copy(to, global->second);
    // A variable that nobody set reads as 0, and only the name "null" as no handle.
    if (equalsFolded(text, "null")) {
        to.emplace<std::uintptr_t>(0);
    } else {
        put(to, 0.0);
    }
}

void Exec::store(std::int32_t name, ScriptValue& from) {
    ScriptValue* value = find(name);
    if (value == nullptr) {
        charge(kEntrySteps);
        value = &context_->local[names_.text(name)];
    }
    take(*value, from);
}

void Exec::updateName(const Instr& instr, const ScriptValue& right) {
    ScriptValue value;
    load(instr.b, value);
    chargeText(value);
    chargeText(right);
    put(value, arithmetic(instr.word, num(value), num(right)));
    store(instr.b, value);
}

void Exec::updateSlot(const Instr& instr, Slot& slot, const ScriptValue& right) {
    if (!slot.present && !instr.flag) return updateName(instr, right);
    if (!slot.present) load(instr.b, slot.value);
    chargeText(slot.value);
    chargeText(right);
    put(slot.value, arithmetic(instr.word, num(slot.value), num(right)));
    slot.present = true;
}

// --- Operators

void Exec::copy(ScriptValue& to, const ScriptValue& from) {
    if (const auto* number = std::get_if<double>(&from)) return put(to, *number);
    to = from;
}

void Exec::binaryNumber(const Instr& instr, ScriptValue& left) {
    auto* number = std::get_if<double>(&left);
    if (number != nullptr && !isComparison(instr.word)) {
        *number = arithmetic(instr.word, *number, instr.number);
    } else {
        binary(instr.word, left, instr.number);
    }
}

void Exec::binary(Word op, ScriptValue& left, const ScriptValue& right) {
    chargeText(left);
    chargeText(right);
    if (isComparison(op)) return putTruth(left, compare(op, left, right));
    auto* a = std::get_if<double>(&left);
    const auto* b = std::get_if<double>(&right);
    if (a != nullptr && b != nullptr) {
        *a = arithmetic(op, *a, *b);
    } else if (op == Word::Add && (left.index() == 2 || right.index() == 2)) {
        join(left, right);
    } else {
        put(left, arithmetic(op, num(left), num(right)));
    }
}

void Exec::join(ScriptValue& left, const ScriptValue& right) {
    std::string text = str(left);
    if (const auto* tail = std::get_if<ScriptText>(&right)) {
        text += tail->str();
    } else {
        text += str(right);
    }
    if (text.size() > kMaxText) throw std::runtime_error("script text too long");
    charge(text.size() / kTextPerStep);
    left = std::move(text);
}

}  // namespace port::script
