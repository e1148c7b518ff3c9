#pragma once

// Runs compiled functions. One machine serves one run at a time and is used again by the next, so
// that a call allocates nothing once the stacks have grown.

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
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
        : library_(library),
          names_(library.names()),
          globals_(globals),
          steps_(steps),
          random_(random) {}

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
    // A second holder of a value.
    void copy(ScriptValue& to, const ScriptValue& from);
    // Variables of the context were erased: where they stood is no longer known.
    void forgetVariables() { ++epoch_; }

  private:
    struct Slot {
        ScriptValue value;
        bool present = false;  // declared so far in this call
    };
    struct Frame {
        Function* function = nullptr;
        const Instr* next = nullptr;
        // Where its parts of the stacks begin, and where its values end.
        std::size_t slots = 0;
        std::size_t counters = 0;
        std::size_t stack = 0;
        std::size_t top = 0;
    };
    // Where a variable of the context was found in this epoch.
    struct Known {
        std::uint64_t epoch = 0;
        ScriptValue* value = nullptr;
    };
    // The running function, and its parts of the stacks. Held by run() alone and passed to no one,
    // so that its loop keeps them in the registers of the processor.
    struct Registers {
        const Function* function = nullptr;
        const Instr* code = nullptr;
        const Instr* ip = nullptr;
        ScriptValue* top = nullptr;  // behind the last value
        Slot* slots = nullptr;
        std::int32_t* counters = nullptr;

        void jump(std::int32_t to) { ip = code + to; }
        [[nodiscard]] const CallSite& site(const Instr& instr) const {
            return function->sites[static_cast<std::size_t>(instr.a)];
        }
    };

    void run();
    Registers registers();
    void enter(Function& function, std::size_t count, std::size_t top);
    bool leave(ScriptValue& value);
    void popFrame();
    void reset();
    void escape(bool breaks, const Instr* next, const ScriptValue* top);
    [[noreturn]] static void outOfSteps();

    void callUser(const CallSite& site, const Instr* next, const ScriptValue* top);
    ScriptValue* callBuiltin(const CallSite& site, const Instr* next, ScriptValue* top);
    ScriptValue* callHost(const CallSite& site, const Instr* next, ScriptValue* top);

    ScriptValue* find(std::int32_t name);
    void load(std::int32_t name, ScriptValue& to);
    void store(std::int32_t name, ScriptValue& from);
    void updateName(const Instr& instr, const ScriptValue& right);
    void updateSlot(const Instr& instr, Slot& slot, const ScriptValue& right);

    void binaryNumber(const Instr& instr, ScriptValue& left);
    void binary(Word op, ScriptValue& left, const ScriptValue& right);
    void join(ScriptValue& left, const ScriptValue& right);

    ScriptLibrary& library_;
    const Names& names_;
    ScriptVariables& globals_;
    std::int64_t& steps_;
    std::mt19937& random_;
    ScriptHost* host_ = nullptr;
    ScriptContext* context_ = nullptr;
    UnansweredNames* unsupported_ = nullptr;

    std::vector<ScriptValue> stack_;
    std::vector<Slot> slots_;
    std::vector<std::int32_t> counters_;
    std::vector<Frame> frames_;
    std::vector<Known> known_;  // by name
    std::uint64_t epoch_ = 0;
};

}  // namespace port::script
