// The engine as the host of the game's scripts, and the runs of its hooks.

#include <algorithm>
#include <string_view>
#include <system_error>

#include "Engine.hpp"
#include "Log.hpp"

namespace port {
namespace {

std::string singleLine(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    return text;
}

}  // namespace

ScriptValue Engine::callScriptFunction(const std::string& name, const std::vector<ScriptValue>&,
                                       ScriptContext&, std::vector<std::string>& unsupported) {
    if (std::ranges::find(unsupported, name) == unsupported.end()) unsupported.push_back(name);
    return {};
}

// Scripts cannot draw yet.
void Engine::clearScriptDrawing() {}

template <class Run>
ScriptRunResult Engine::runWithinBudget(Run run) {
    scriptVm_.setSteps(scriptSteps_);
    ScriptRunResult result = run();
    scriptSteps_ = scriptVm_.stepsLeft();
    return result;
}

void Engine::runModelScript(const char* path, ScriptContext& context, const char* event) {
    if (*path == '\0') return;
    if (!event) event = "hook";
    const ScriptRunResult result =
        runWithinBudget([&] { return scriptVm_.runFile(path, context, "main"); });
    if (!result.ok) warnLine("Script VM ", event, " error [", path, "]: ", result.error);
    for (const std::string& name : result.unsupported) {
        logScriptLine(std::string(event) + "\t" + path + "\tunsupported=" + name);
    }
}

void Engine::runAnimationCommand(const ActorView& actor, const generated::Frame& frame,
                                 const generated::Animation& animation) {
    if (!actor.model) return;
    const std::string_view helper = actor.model->animationScript;
    std::string text = animation.inlineScript;
    if (*frame.animationCommand != '\0') {
        text += '\n';
        text += frame.animationCommand;
    }
    actor.context.local["animhandle"] = animation.name;
    if (text.empty() && helper.empty()) return;
    const ScriptRunResult result =
        runWithinBudget([&] { return scriptVm_.runAnimationCommand(helper, text, actor.context); });
    if (!result.ok) {
        warnLine("Animation ScriptVM ", actor.events.animationFrame, " model=", actor.model->name,
                 " anim=", animation.name, " frame=", &frame - animation.frames,
                 " frameSprite=", frame.sprite, " helper=", helper, " call=", singleLine(text),
                 " error: ", result.error);
    }
    for (const std::string& name : result.unsupported) {
        logScriptLine(std::string(actor.events.animationFrame) + "\tmodel=" + actor.model->name +
                      "\thelper=" + std::string(helper) + "\tcall=" + singleLine(text) +
                      "\tunsupported=" + name);
    }
}

void Engine::logScriptLine(const std::string& line) {
    if (scriptLogBytes_ + line.size() > script::kMaxLogBytes) return;
    if (!scriptLog_.is_open()) {
        std::error_code unwritable;  // then nothing is logged, and the game goes on
        std::filesystem::create_directories(root_ / "logs", unwritable);
        scriptLog_.open(root_ / "logs" / "script-vm.log", std::ios::app);
    }
    scriptLog_ << line << '\n' << std::flush;
    scriptLogBytes_ += line.size() + 1;
}

}  // namespace port
