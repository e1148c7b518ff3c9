#include "ScriptExec.hpp"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <utility>

#include "ScriptOperators.hpp"
#include "ScriptValue.hpp"

namespace port::script {
namespace {

// The counter of a switch that no label has matched.
constexpr std::int32_t kNoMatch = -1;

const double* numberOf(const ScriptValue& value) {
    return std::get_if<double>(&value);
}

// `operate` on two numbers; false if they are none.
template <typename Operate>
bool onNumbers(ScriptValue& to, const ScriptValue& left, const ScriptValue& right,
               Operate operate) {
    const double* const a = numberOf(left);
    const double* const b = numberOf(right);
    if (a == nullptr || b == nullptr) return false;
    put(to, operate(*a, *b));
    return true;
}

constexpr auto kAdd = [](double a, double b) { return a + b; };
constexpr auto kSub = [](double a, double b) { return a - b; };
constexpr auto kMul = [](double a, double b) { return a * b; };
constexpr auto kDiv = [](double a, double b) { return quotient(a, b); };

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
    View v = view();
    const auto operate = [&](const Instr& i, const ScriptValue& right, auto operation) {
        ScriptValue& to = v.registers[i.a];
        const ScriptValue& left = v.registers[i.b];
        if (!onNumbers(to, left, right, operation)) binary(i, to, left, right);
    };
    const auto test = [&](const Instr& i, const ScriptValue& right, auto comparison) {
        const ScriptValue& left = v.registers[i.a];
        const double* const a = numberOf(left);
        const double* const b = numberOf(right);
        v.passIf(a != nullptr && b != nullptr ? comparison(*a, *b) : compares(i.word, left, right));
    };
    // Whether there is one round more: at its limit a loop just goes on behind it.
    const auto loopBack = [&](const Instr& i) {
        if (++v.counters[i.a] >= kMaxRounds) return false;
        charge(static_cast<std::size_t>(v.ip - (v.code + i.wide())));
        v.jump(i.wide());
        return true;
    };
    // What it was stepped to, if that is a number and there is one round more.
    const auto stepBack = [&](const Instr& i) -> const double* {
        ScriptValue& stepped = v.registers[i.a];
        const ScriptValue& step = v.constants[i.c];
        auto* const number = std::get_if<double>(&stepped);
        if (number != nullptr && numberOf(step) != nullptr) {
            *number += *numberOf(step);
        } else {
            binary(i, stepped, stepped, step);
        }
        return loopBack(*v.ip++) ? number : nullptr;
    };
    // Leaves the test that comes next to its own instruction where it is not of numbers.
    const auto countBack = [&](const Instr& i, const ScriptValue* ends) {
        const double* const number = stepBack(i);
        const double* const end = number != nullptr ? numberOf(ends[v.ip->b]) : nullptr;
        if (end == nullptr) return;
        ++v.ip;
        v.passIf(*number < *end);
    };
    for (;;) {
        const Instr& i = *v.ip++;
        switch (i.op) {
            case Op::Move:
                copy(v.registers[i.a], v.registers[i.b]);
                break;
            case Op::Constant:
                copy(v.registers[i.a], v.constants[i.wide()]);
                break;
            case Op::Truth:
                putTruth(v.registers[i.a], holds(v.registers[i.b]));
                break;
            case Op::LoadName:
                load(i.wide(), v.registers[i.a]);
                break;
            case Op::StoreName:
                store(i.wide(), v.registers[i.a]);
                break;
            case Op::UpdateName:
                update(i.wide(), i.word, v.registers[i.a]);
                break;
            case Op::LoadMaybe: {
                const Maybe& maybe = v.maybe(i);
                if (declared(maybe) != 0) {
                    copy(v.registers[i.a], v.registers[maybe.place]);
                } else {
                    load(static_cast<std::uint32_t>(maybe.name), v.registers[i.a]);
                }
                break;
            }
            case Op::StoreMaybe: {
                const Maybe& maybe = v.maybe(i);
                if (declared(maybe) != 0) {
                    copy(v.registers[maybe.place], v.registers[i.a]);
                } else {
                    store(static_cast<std::uint32_t>(maybe.name), v.registers[i.a]);
                }
                break;
            }
            case Op::UpdateMaybe: {
                const Maybe& maybe = v.maybe(i);
                if (declared(maybe) != 0) {
                    ScriptValue& value = v.registers[maybe.place];
                    chargeText(value);
                    chargeText(v.registers[i.a]);
                    put(value, arithmetic(i.word, num(value), num(v.registers[i.a])));
                } else {
                    update(static_cast<std::uint32_t>(maybe.name), i.word, v.registers[i.a]);
                }
                break;
            }
            case Op::Declare:
                declared(v.maybe(i)) = 1;
                break;
            case Op::Add:
            case Op::Sum:
                operate(i, v.registers[i.c], kAdd);
                break;
            case Op::AddK:
            case Op::SumK:
                operate(i, v.constants[i.c], kAdd);
                break;
            case Op::Sub:
                operate(i, v.registers[i.c], kSub);
                break;
            case Op::SubK:
                operate(i, v.constants[i.c], kSub);
                break;
            case Op::Mul:
                operate(i, v.registers[i.c], kMul);
                break;
            case Op::MulK:
                operate(i, v.constants[i.c], kMul);
                break;
            case Op::Div:
                operate(i, v.registers[i.c], kDiv);
                break;
            case Op::DivK:
                operate(i, v.constants[i.c], kDiv);
                break;
            case Op::Binary:
                binary(i, v.registers[i.a], v.registers[i.b], v.registers[i.c]);
                break;
            case Op::BinaryK:
                binary(i, v.registers[i.a], v.registers[i.b], v.constants[i.c]);
                break;
            case Op::Prefix:
                chargeText(v.registers[i.b]);
                applyPrefix(i.word, v.registers[i.a], v.registers[i.b]);
                break;
            case Op::Equal:
                test(i, v.registers[i.b], isSame);
                break;
            case Op::EqualK:
                test(i, v.constants[i.b], isSame);
                break;
            case Op::NotEqual:
                test(i, v.registers[i.b], std::not_fn(isSame));
                break;
            case Op::NotEqualK:
                test(i, v.constants[i.b], std::not_fn(isSame));
                break;
            case Op::Less:
                test(i, v.registers[i.b], std::less());
                break;
            case Op::LessK:
                test(i, v.constants[i.b], std::less());
                break;
            case Op::LessEqual:
                test(i, v.registers[i.b], std::less_equal());
                break;
            case Op::LessEqualK:
                test(i, v.constants[i.b], std::less_equal());
                break;
            case Op::GreaterK:
                test(i, v.constants[i.b], std::greater());
                break;
            case Op::GreaterEqualK:
                test(i, v.constants[i.b], std::greater_equal());
                break;
            case Op::Jump:
                v.jump(i.wide());
                break;
            case Op::JumpIfFalse:
                if (!holds(v.registers[i.a])) v.jump(i.wide());
                break;
            case Op::JumpIfTrue:
                if (holds(v.registers[i.a])) v.jump(i.wide());
                break;
            case Op::LoopBegin:
                v.counters[i.a] = 0;
                break;
            case Op::LoopBack:
                loopBack(i);
                break;
            case Op::StepBack:
                stepBack(i);
                break;
            case Op::CountBack:
                countBack(i, v.registers);
                break;
            case Op::CountBackK:
                countBack(i, v.constants);
                break;
            case Op::SwitchBegin:
                v.counters[i.a] = kNoMatch;
                break;
            case Op::CaseTest: {
                std::int32_t& match = v.counters[i.c];
                if (match < 0) {
                    const bool met = compares(Word::Equal, v.registers[i.a], v.registers[i.b]);
                    match = met ? ~match : match - 1;
                }
                break;
            }
            case Op::SwitchJump: {
                const SwitchTable& table = v.function->switches[i.wide()];
                const std::int32_t match = v.counters[i.a];
                v.jump(static_cast<std::uint32_t>(
                    match < 0 ? table.otherwise : table.targets[static_cast<std::size_t>(match)]));
                break;
            }
            case Op::SwitchNumber:
                v.jump(static_cast<std::uint32_t>(
                    labelOf(v.function->switches[i.wide()], v.registers[i.a])));
                break;
            case Op::CallBuiltin:
                if (!callBuiltin(v.site(i), v.ip, v.registers + i.a)) v = view();
                break;
            case Op::CallUser:
                callUser(v.site(i), v.ip, v.registers + i.a);
                v = view();
                break;
            case Op::CallHost:
                if (!callHost(v.site(i), v.ip, v.registers + i.a)) v = view();
                break;
            case Op::Return:
                if (!leave(i.a)) return;
                v = view();
                break;
            case Op::ReturnEmpty:
                v.registers[0].emplace<std::monostate>();
                if (!leave(0)) return;
                v = view();
                break;
            case Op::EscapeBreak:
            case Op::EscapeContinue:
                escape(i.op == Op::EscapeBreak, v.ip);
                v = view();
                break;
            case Op::Throw:
                throw std::runtime_error(v.function->errors[i.wide()]);
        }
    }
}

// --- Frames

Exec::View Exec::view() {
    const Frame& current = frame();
    const Function& function = *current.function;
    return {&function,
            function.code.data(),
            current.next,
            registers_.data() + current.base,
            function.constants.data(),
            counters_.data() + current.counters};
}

// The arguments are the `count` registers from `base` on, where those of the call begin.
void Exec::enter(Function& function, std::size_t base, std::size_t count) {
    if (depth_ == kMaxCalls) throw std::runtime_error("script recursion limit exceeded");
    if (!function.paid) charge(library_.takeCost(function));
    charge(function.cost);
    Frame& entered = frames_[depth_];
    const std::size_t counters = depth_ > 0 ? frame().countersEnd : 0;
    entered = {&function, function.code.data(), base, counters, counters + function.counters};
    const bool fits = base + std::max(count, function.registers) <= registers_.size() &&
                      entered.countersEnd <= counters_.size() && function.names <= names_;
    if (!fits) grow(entered, count);
    if (count != function.bound || !function.maybes.empty()) settle(entered, count);
    ++depth_;
}

void Exec::grow(const Frame& frame, std::size_t count) {
    const std::size_t end = frame.base + std::max(count, frame.function->registers);
    if (registers_.size() < end) {
        registers_.resize(std::max(end, 2 * registers_.size()));
        declared_.resize(registers_.size());
    }
    if (counters_.size() < frame.countersEnd) counters_.resize(2 * frame.countersEnd);
    names_ = library_.names().size();
    known_.resize(names_);
    chargeEntries(0);
}

// Missing arguments are empty, and spare ones are dropped.
void Exec::settle(const Frame& frame, std::size_t count) {
    const std::size_t bound = frame.function->bound;
    for (std::size_t i = std::min(bound, count); i < std::max(bound, count); ++i) {
        registers_[frame.base + i].emplace<std::monostate>();
    }
    for (const Maybe& maybe : frame.function->maybes) declared_[frame.base + maybe.place] = 0;
}

// The value of register `place` comes to where the caller expects it. False once the outermost
// function has returned.
bool Exec::leave(std::size_t place) {
    const Frame& left = frame();
    ScriptValue* const registers = registers_.data() + left.base;
    if (place != 0) take(registers[0], registers[place]);
    for (std::size_t i = 1; i < left.function->registers; ++i) release(registers[i]);
    if (--depth_ > 0) return true;
    release(registers[0]);
    return false;
}

void Exec::popFrame() {
    const Frame& left = frame();
    for (std::size_t i = 0; i < left.function->registers; ++i) release(registers_[left.base + i]);
    --depth_;
}

void Exec::reset() {
    while (depth_ > 0) popFrame();
}

// A break or continue that no loop of its function holds goes on in the nearest loop, or for a
// break switch, whose body made the call that it came from, directly or not.
void Exec::escape(bool breaks, const Instr* next) {
    frame().next = next;
    for (; depth_ > 0; popFrame()) {
        Frame& current = frame();
        const Instr* const code = current.function->code.data();
        const auto from = static_cast<std::int32_t>(current.next - code) - 1;
        for (const CatchRange& range : current.function->ranges) {
            const std::int32_t to = breaks ? range.breakTo : range.continueTo;
            if (from < range.begin || from >= range.end || to < 0) continue;
            current.next = code + to;
            return;
        }
    }
    if (breaks) throw BreakSignal();
    throw ContinueSignal();
}

void Exec::outOfSteps() {
    throw std::runtime_error("script step limit exceeded");
}

void Exec::chargeEntries(std::size_t count) {
    charge(kEntrySteps * count);
    if (ScriptMemory::bytes() > kMaxMemory)
        throw std::runtime_error("script memory limit exceeded");
}

}  // namespace port::script
