#pragma once

// The scripts of a running game: the machine, the steps that each pass of the loop grants, and the
// log of the calls that nothing answers. A script that fails says so on the error stream, and the
// game goes on.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "ScriptLimits.hpp"
#include "ScriptVM.hpp"

namespace port {

class Scripts {
  public:
    // Scripts are looked for under `dataRoot`; the log is `portRoot`/logs/script-vm.log. The host
    // is not owned. `asWritten` is ScriptVM::setRoot's.
    void open(const std::filesystem::path& portRoot, const std::filesystem::path& dataRoot,
              ScriptHost* host, bool asWritten = false);

    [[nodiscard]] ScriptVM& machine() { return machine_; }
    [[nodiscard]] const ScriptVM& machine() const { return machine_; }

    // Grants the steps that all scripts of one pass share, whatever they do in it. To be called in
    // every pass, also while the game is paused.
    void beginPass() { machine_.setSteps(passSteps_); }
    void setPassSteps(std::int64_t steps) { passSteps_ = steps; }

    // While it lives, scripts have the steps for loading a stage; then again what the pass had
    // left.
    class Loading {
      public:
        explicit Loading(Scripts& scripts)
            : machine_(scripts.machine_), left_(machine_.stepsLeft()) {
            machine_.setSteps(script::kLoadingSteps);
        }
        Loading(const Loading&) = delete;
        Loading& operator=(const Loading&) = delete;
        ~Loading() { machine_.setSteps(left_); }

      private:
        ScriptVM& machine_;
        std::int64_t left_;
    };

    // Whether the data root holds the script. Each path is asked for on disk once.
    [[nodiscard]] bool has(std::string_view path);

    // Runs the "main" of a hook's script; nothing for an empty path. A null event reads "hook".
    // Like the machine, lets a break or continue out that no loop holds.
    void runHook(const char* path, ScriptContext& context, const char* event);

    // The same where the data root holds the script.
    void runGlobal(const char* path, ScriptContext& context, const char* event) {
        if (has(path)) runHook(path, context, event);
    }

    // A frame's command: texts as the tables have them, empty where there is none.
    struct FrameCommand {
        const char* event = "";
        const char* model = "";
        const char* helper = "";  // script of the model's animations
        const char* animation = "";
        std::size_t frame = 0;
        const char* sprite = "";
        const char* inlineScript = "";  // of the animation
        const char* command = "";       // of the frame
    };
    void runFrameCommand(const FrameCommand& command, ScriptContext& context);

    // ScriptVM's preparing, of what these two would run.
    std::size_t prepareHook(const char* path) { return machine_.prepareFile(path); }
    std::size_t prepareFrameCommand(const FrameCommand& command);

    // A run and what came of it, for as long as its telling lasts.
    struct Run {
        std::string_view event;
        std::string_view script;  // of a frame's command without a helper, its animation
        const ScriptRunResult& result;
    };
    // Is told of each run from now on; null for nobody.
    void watch(std::function<void(const Run&)> watch) { watch_ = std::move(watch); }

  private:
    void logUnanswered(const UnansweredNames& unsupported,
                       std::initializer_list<std::string_view> where);
    void log(std::initializer_list<std::string_view> where, std::string_view name);

    ScriptVM machine_;
    std::int64_t passSteps_ = script::kPassSteps;
    std::map<std::string, bool, std::less<>> known_;  // what has() has found
    std::filesystem::path logFile_;
    std::ofstream log_;
    std::set<const void*> complained_;  // complaints of scripts that were logged
    std::size_t logRoom_ = 0;
    std::function<void(const Run&)> watch_;
    std::string text_;  // of the command that is looked up, kept for its memory
};

}  // namespace port
