#pragma once

// Runs compiled functions. One machine serves one run at a time and is used again by the next, so
// that a call allocates nothing once the registers have grown.

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "ScriptCode.hpp"
#include "ScriptLibrary.hpp"
#include "ScriptLimits.hpp"
#include "ScriptVM.hpp"

namespace port::script {

class Exec {
  public:
    Exec(ScriptLibrary& library, ScriptVariables& globals, std::int64_t& steps,
         std::mt19937& random)
        : library_(library), globals_(globals), steps_(steps), random_(random) {}

    // The world of the calls that follow.
    void begin(ScriptHost* host, ScriptContext& context, UnansweredNames& unsupported);
    // Runs a function without arguments. Throws std::runtime_error for what ends a run, and
    // BreakSignal or ContinueSignal for one that no loop caught.
    void call(Function& function);

    // Takes `count` steps from the run; throws once there are none left.
    void charge(std::size_t count) {
        steps_ -= static_cast<std::int64_t>(count);
        if (steps_ < 0) outOfSteps();
    }
    // For reading a value as a text, number or name.
    void chargeText(const ScriptValue& value) {
        if (const auto* text = std::get_if<ScriptText>(&value)) charge(text->size() / kTextPerStep);
    }
    // For elements or variables that come to be. Throws once all values together are too large.
    void chargeEntries(std::size_t count);
    // Variables came, or were erased: where they stand is no longer known.
    void forgetVariables() { ++epoch_; }

  private:
    struct Frame {
        Function* function = nullptr;
        const Instr* next = nullptr;
        // Where its parts of the registers and counters begin.
        std::size_t base = 0;
        std::size_t counters = 0;
        std::size_t countersEnd = 0;
    };
    // Where a variable was found in this epoch.
    struct Known {
        std::uint64_t epoch = 0;
        const ScriptValue* value = nullptr;
        ScriptValue* own = nullptr;  // in the context; null if it is not there
    };
    // The running function, and its parts of the stacks. Held by run() alone and passed to no one,
    // so that its loop keeps them in the registers of the processor.
    struct View {
        const Function* function = nullptr;
        const Instr* code = nullptr;
        const Instr* ip = nullptr;
        ScriptValue* registers = nullptr;
        const ScriptValue* constants = nullptr;
        std::int32_t* counters = nullptr;

        [[nodiscard]] const CallSite& site(const Instr& instr) const {
            return function->sites[instr.wide()];
        }
        [[nodiscard]] const Maybe& maybe(const Instr& instr) const {
            return function->maybes[instr.wide()];
        }
        void jump(std::uint32_t to) { ip = code + to; }
        // Behind a test: over the jump that follows it, or along it.
        void passIf(bool met) {
            if (met) {
                ++ip;
            } else {
                jump(ip->wide());
            }
        }
    };

    void run();
    View view();
    void enter(Function& function, std::size_t base, std::size_t count);
    void grow(const Frame& frame, std::size_t count);
    void settle(const Frame& frame, std::size_t count);
    bool leave(std::size_t place);
    void popFrame();
    void reset();
    void escape(bool breaks, const Instr* next);
    [[noreturn]] static void outOfSteps();
    [[nodiscard]] Frame& frame() { return frames_[depth_ - 1]; }

    // Calls: the arguments begin at `args`, where the result comes. False if the run goes on
    // elsewhere: in a function of the script, or behind a loop.
    void callUser(const CallSite& site, const Instr* next, const ScriptValue* args) {
        frame().next = next;
        enter(*site.user, static_cast<std::size_t>(args - registers_.data()), site.count);
    }
    bool callBuiltin(const CallSite& site, const Instr* next, ScriptValue* args);
    bool callHost(const CallSite& site, const Instr* next, ScriptValue* args);

    Known& known(std::uint32_t name) {
        Known& known = known_[name];
        if (known.epoch != epoch_) look(name, known);
        return known;
    }
    void look(std::uint32_t name, Known& known);
    void load(std::uint32_t name, ScriptValue& to);
    void store(std::uint32_t name, const ScriptValue& from);
    void update(std::uint32_t name, Word op, const ScriptValue& right);
    [[nodiscard]] char& declared(const Maybe& maybe) {
        return declared_[frame().base + maybe.place];
    }

    bool compares(Word op, const ScriptValue& left, const ScriptValue& right);
    void binary(const Instr& instr, ScriptValue& to, const ScriptValue& left,
                const ScriptValue& right);
    void join(ScriptValue& to, const ScriptValue& left, const ScriptValue& right);
    std::int32_t labelOf(const SwitchTable& table, const ScriptValue& key);

    ScriptLibrary& library_;
    ScriptVariables& globals_;
    std::int64_t& steps_;
    std::mt19937& random_;
    ScriptHost* host_ = nullptr;
    ScriptContext* context_ = nullptr;
    UnansweredNames* unsupported_ = nullptr;

    // What is left behind in a register stays until it is overwritten or its call ends.
    std::vector<ScriptValue, ScriptAllocator<ScriptValue>> registers_;
    std::vector<char> declared_;  // by register, for those of maybes
    std::vector<std::int32_t> counters_;
    std::array<Frame, kMaxCalls> frames_{};
    std::size_t depth_ = 0;
    std::vector<Known> known_;  // by name
    std::size_t names_ = 0;     // of those
    std::uint64_t epoch_ = 0;
};

}  // namespace port::script
