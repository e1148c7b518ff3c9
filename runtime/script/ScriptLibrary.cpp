#include "ScriptLibrary.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "PathEncoding.hpp"

namespace port::script {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFull = "script library limit exceeded";

}  // namespace

std::string frameText(std::string_view command) {
    std::string text = "\nvoid ";
    text += kFrameFunction;
    text += "(){\n";
    text += command;
    text += "\n}\n";
    return text;
}

std::unique_ptr<Program> ScriptLibrary::program(std::string text, Program* base) {
    kept_ += text.size();
    cost_ += text.size() / kExpandedPerStep;
    auto made = std::make_unique<Program>(lex(std::move(text)), names_, base);
    kept_ += made->tokens.list.size() * sizeof(Tok);
    return made;
}

// For what preprocessing took from `before` to `state`, and for the copy of what stood before.
void ScriptLibrary::pay(const PreprocessorState& state, const PreprocessorState& before) {
    cost_ += (state.consumed - before.consumed) / kSourcePerStep + before.macros.size() +
             before.funcMacros.size() + before.imported.size();
}

std::size_t ScriptLibrary::compile(Function& function) {
    if (full()) throw std::runtime_error(kFull);
    const std::size_t work = script::compile(function);
    kept_ += function.code.size() * sizeof(Instr);
    return work / kCompiledPerStep;
}

const Script& ScriptLibrary::load(const fs::path& path) {
    std::unique_ptr<Script>& known = scripts_[PathEncoding::utf8(path)];
    if (known) return *known;
    known = std::make_unique<Script>();
    const std::string* text = sources_.text(path);
    if (text == nullptr) {
        known->error = "script not found: " + PathEncoding::utf8(path);
        return *known;
    }
    if (full()) {
        known->error = kFull;
        return *known;
    }
    PreprocessorState state;
    state.imported.insert(PathEncoding::utf8(path));
    std::string expanded = preprocessScript(sources_, path, *text, state);
    pay(state, {});
    known->unsupported = std::move(state.unsupported);
    known->program = program(std::move(expanded));
    return *known;
}

const Script& ScriptLibrary::file(std::string_view raw) {
    const auto known = files_.find(raw);
    if (known != files_.end()) return *known->second;
    const Script* script = nullptr;
    fs::path relative;
    if (relativeScriptPath(raw, relative)) {
        script = &load(sources_.paths.locate(raw, relative));
    } else {
        auto& refused = refused_[std::string(raw)] = std::make_unique<Script>();
        refused->error = "unsafe script path";
        script = refused.get();
    }
    return *files_.emplace(raw, script).first->second;
}

const ScriptLibrary::Helper& ScriptLibrary::helper(const fs::path& path) {
    const auto [slot, added] = helpers_.try_emplace(PathEncoding::utf8(path));
    Helper& helper = slot->second;
    if (!added) return helper;
    const Script& script = load(path);
    helper.script = &script;
    helper.state.imported.insert(PathEncoding::utf8(path));
    if (!script.program) return helper;
    // Once more for the macros and conditions that it leaves behind.
    (void)preprocessScript(sources_, path, *sources_.text(path), helper.state);
    pay(helper.state, {});
    const std::vector<Tok>& tokens = script.program->tokens.list;
    helper.closed = script.program->tokens.closed && script.program->balanced &&
                    std::none_of(tokens.begin(), tokens.end(), [](const Tok& token) {
                        return equalsFolded(token.s, kFrameFunction);
                    });
    return helper;
}

// A game has thousands of commands and few helpers. As long as the command's text adds its one
// function and nothing else, it stands on the helper's program instead of a copy of it.
void ScriptLibrary::build(Command& command, const Helper& helper, const fs::path& path,
                          std::string_view text) {
    Script& script = command.script;
    if (full()) {
        script.error = kFull;
        return;
    }
    PreprocessorState state = helper.state;
    std::string expanded = preprocessScript(sources_, path, frameText(text), state);
    pay(state, helper.state);
    script.unsupported = std::move(state.unsupported);
    Program* const base = helper.script ? helper.script->program.get() : nullptr;
    script.program = program(expanded, base);
    const bool stands = base == nullptr || (helper.closed && script.program->functions.size() == 1);
    if (!stands) script.program = program(*base->tokens.source + expanded);
    if (helper.script != nullptr) command.helperMain = script.program->find("main");
    command.frame = script.program->find(kFrameFunction);
}

const Command& ScriptLibrary::command(std::string_view rawHelper, std::string_view text) {
    key_.assign(rawHelper).append(1, '\0').append(text);
    const auto known = commands_.find(key_);
    if (known != commands_.end()) return known->second;
    Command& command = commands_[key_];
    if (rawHelper.empty()) {
        const fs::path path = sources_.paths.root() / kFrameFile;
        Helper none;
        none.state.imported.insert(PathEncoding::utf8(path));
        build(command, none, path, text);
        return command;
    }
    fs::path relative;
    if (!relativeScriptPath(rawHelper, relative)) {
        command.script.error = "unsafe animation script path";
        return command;
    }
    const fs::path path = sources_.paths.locate(rawHelper, relative);
    const Helper& found = helper(path);
    if (!found.script->program) {
        command.script.error = "animation helper not found: " + PathEncoding::utf8(path);
    }
    build(command, found, path, text);
    return command;
}

}  // namespace port::script
