#include "Scripts.hpp"

#include <algorithm>
#include <system_error>

#include "AssetPaths.hpp"
#include "Log.hpp"

namespace port {
namespace {

void compose(const Scripts::FrameCommand& command, std::string& text) {
    text = command.inlineScript;
    if (*command.command != '\0') text.append(1, '\n').append(command.command);
}

// The text as messages show it.
std::string singleLine(const Scripts::FrameCommand& command) {
    std::string text;
    compose(command, text);
    std::ranges::replace(text, '\n', ' ');
    return text;
}

// Keeps the text that stands there if it is the same.
void setText(ScriptValue& value, const char* text) {
    const auto* known = std::get_if<ScriptText>(&value);
    if (known == nullptr || *known != text) value = text;
}

}  // namespace

void Scripts::open(const std::filesystem::path& portRoot, const std::filesystem::path& dataRoot,
                   ScriptHost* host, bool asWritten) {
    machine_.setRoot(dataRoot, asWritten);
    machine_.setHost(host);
    known_.clear();
    complained_.clear();
    log_.close();
    logFile_ = portRoot / "logs" / "script-vm.log";
    logRoom_ = script::kMaxLogBytes;
}

bool Scripts::has(std::string_view path) {
    const auto known = known_.find(path);
    if (known != known_.end()) return known->second;
    std::error_code absent;
    const bool found = std::filesystem::exists(runtimeCasePath(machine_.root() / path), absent);
    return known_.emplace(path, found).first->second;
}

void Scripts::runHook(const char* path, ScriptContext& context, const char* event) {
    if (*path == '\0') return;
    if (event == nullptr) event = "hook";
    const ScriptRunResult result = machine_.runFile(path, context);
    if (watch_) watch_({event, path, result});
    if (!result.ok) warnLine("Script VM ", event, " error [", path, "]: ", result.error);
    logUnanswered(result.unsupported, {event, "\t", path});
}

void Scripts::runFrameCommand(const FrameCommand& command, ScriptContext& context) {
    setText(context.local["animhandle"], command.animation);
    // A host may run another command inside this one: the machine reads the text before it runs.
    compose(command, text_);
    if (text_.empty() && *command.helper == '\0') return;
    const ScriptRunResult result = machine_.runAnimationCommand(command.helper, text_, context);
    if (watch_) {
        const bool helped = *command.helper != '\0';
        watch_({command.event, helped ? command.helper : command.animation, result});
    }
    if (result.ok && result.unsupported.empty()) return;
    const std::string call = singleLine(command);
    if (!result.ok) {
        warnLine("Animation ScriptVM ", command.event, " model=", command.model,
                 " anim=", command.animation, " frame=", command.frame,
                 " frameSprite=", command.sprite, " helper=", command.helper, " call=", call,
                 " error: ", result.error);
    }
    logUnanswered(result.unsupported, {command.event, "\tmodel=", command.model,
                                       "\thelper=", command.helper, "\tcall=", call});
}

std::size_t Scripts::prepareFrameCommand(const FrameCommand& command) {
    compose(command, text_);
    return machine_.prepareAnimationCommand(command.helper, text_);
}

// What preprocessing had to say is the same in every run, and is logged with the first.
void Scripts::logUnanswered(const UnansweredNames& unsupported,
                            std::initializer_list<std::string_view> where) {
    const std::vector<std::string>& complaints = unsupported.complaints();
    if (!complaints.empty() && complained_.insert(&complaints).second) {
        for (const std::string& complaint : complaints) log(where, complaint);
    }
    for (const std::string& name : unsupported.names()) log(where, name);
}

// One line, at once so that a crash loses none. Where it cannot be written the game goes on.
void Scripts::log(std::initializer_list<std::string_view> where, std::string_view name) {
    constexpr std::string_view kLabel = "\tunsupported=";
    std::size_t size = kLabel.size() + name.size() + 1;
    for (const std::string_view part : where) size += part.size();
    // The first line without room closes the log: it ends where the story has its first gap.
    if (size > logRoom_) logRoom_ = 0;
    if (logRoom_ == 0) return;
    logRoom_ -= size;
    if (!log_.is_open()) {
        std::error_code unwritable;
        std::filesystem::create_directories(logFile_.parent_path(), unwritable);
        log_.open(logFile_, std::ios::app);
        if (!log_.is_open()) logRoom_ = 0;
    }
    for (const std::string_view part : where) log_ << part;
    log_ << kLabel << name << '\n' << std::flush;
}

}  // namespace port
