#include "ScriptLibrary.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "PathEncoding.hpp"

namespace port::script {
namespace {

namespace fs = std::filesystem;

constexpr const char* kFull = "script library limit exceeded";

UnansweredNames::Complaints listed(std::vector<std::string> complaints) {
    if (complaints.empty()) return nullptr;
    return std::make_shared<const std::vector<std::string>>(std::move(complaints));
}

}  // namespace

std::string frameText(std::string_view command) {
    std::string text = "\nvoid ";
    text += kFrameFunction;
    text += "(){\n";
    text += command;
    text += "\n}\n";
    return text;
}

// Whether a command on the helper could run that function.
bool ScriptLibrary::reaches(const Helper& helper, const Function* function) {
    return function != nullptr &&
           (function->name == "main" || helper.called.contains(function->name));
}

Tokens ScriptLibrary::lexed(std::string text) {
    kept_ += text.size();
    cost_ += text.size() / kExpandedPerStep;
    return lex(std::move(text));
}

std::unique_ptr<Program> ScriptLibrary::program(Tokens tokens, Program* base) {
    kept_ += tokens.list.size() * sizeof(Tok);
    cost_ += tokens.list.size() / kCompiledPerStep;
    return std::make_unique<Program>(std::move(tokens), names_, base);
}

// For what preprocessing took from `before` to `state`, and for the copy of what stood before.
void ScriptLibrary::pay(const PreprocessorState& state, const PreprocessorState& before) {
    cost_ += (state.consumed - before.consumed) / kSourcePerStep + before.macros.size() +
             before.funcMacros.size() + before.imported.size();
}

void ScriptLibrary::settle(std::size_t& making) {
    making = std::exchange(cost_, 0);
    made_ += making;
}

void ScriptLibrary::compile(Function& function) {
    if (full()) throw std::runtime_error(kFull);
    cost_ += script::compile(function, host_, sources_.asWritten) / kCompiledPerStep;
    kept_ += function.code.size() * sizeof(Instr) + function.sites.size() * sizeof(CallSite) +
             function.constants.size() * sizeof(ScriptValue);
    settle(function.making);
}

// The function and those that it may call.
void ScriptLibrary::compileReached(Function* function) {
    std::vector<Function*> reached{function};
    while (!reached.empty() && !full()) {
        Function* const next = reached.back();
        reached.pop_back();
        if (next == nullptr || next->compiled) continue;
        compile(*next);
        for (const CallSite& site : next->sites) reached.push_back(site.user);
    }
}

std::size_t ScriptLibrary::takeCost(Command& command) {
    std::size_t cost = takeCost(command.script);
    if (command.helper != nullptr) {
        cost += takeCost(*command.helper->script) + std::exchange(command.helper->making, 0);
    }
    return cost;
}

std::size_t ScriptLibrary::takeCost(Function& function) {
    if (!function.compiled) compile(function);
    function.paid = true;
    return function.making;
}

std::size_t ScriptLibrary::prepareFile(std::string_view raw, std::string_view function) {
    const std::size_t before = made_;
    if (kept_ > kMaxPrepared) return 0;
    const Script& script = file(raw);
    if (script.program) compileReached(script.program->find(function));
    return made_ - before;
}

std::size_t ScriptLibrary::prepareCommand(std::string_view rawHelper, std::string_view text) {
    const std::size_t before = made_;
    if (kept_ > kMaxPrepared) return 0;
    const Command& made = command(rawHelper, text);
    compileReached(made.helperMain);
    compileReached(made.frame);
    return made_ - before;
}

Script& ScriptLibrary::load(const fs::path& path) {
    std::unique_ptr<Script>& known = scripts_[PathEncoding::utf8(path)];
    if (known) return *known;
    known = std::make_unique<Script>();
    ScriptSource& source = sources_.source(path);
    if (!source.readable) {
        known->error = "script not found: " + PathEncoding::utf8(path);
        return *known;
    }
    if (full()) {
        known->error = kFull;
        return *known;
    }
    PreprocessorState state;
    state.imported.insert(&source);
    std::string expanded = preprocess(sources_, source, state).joined();
    pay(state, {});
    known->complaints = listed(std::move(state.unsupported));
    known->program = program(lexed(std::move(expanded)));
    settle(known->making);
    return *known;
}

Script& ScriptLibrary::file(std::string_view raw) {
    const auto known = files_.find(raw);
    if (known != files_.end()) return *known->second;
    Script* script = nullptr;
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

Helper& ScriptLibrary::helper(const fs::path& path) {
    const auto [slot, added] = helpers_.try_emplace(PathEncoding::utf8(path));
    Helper& helper = slot->second;
    if (!added) return helper;
    Script& script = load(path);
    helper.script = &script;
    ScriptSource& source = sources_.source(path);
    helper.state.imported.insert(&source);
    if (!script.program) return helper;
    // Once more for the macros and conditions that it leaves behind.
    (void)preprocess(sources_, source, helper.state);
    pay(helper.state, {});
    const std::vector<Tok>& tokens = script.program->tokens.list;
    for (std::size_t i = 0; i + 1 < script.program->settled; ++i) {
        const bool call = tokens[i].k == TK::Id && tokens[i + 1].is(Word::LeftParen);
        if (call) helper.called.insert(lower(tokens[i].s));
    }
    settle(helper.making);
    return helper;
}

// `text` behind the helper's. A game has thousands of commands and few helpers: what is settled of
// the helper is shared by all that stand on it, and the rest, if any, begins their own tokens.
std::unique_ptr<Program> ScriptLibrary::onHelper(const Helper& helper, const std::string& text) {
    if (helper.script == nullptr || !helper.script->program) return program(lexed(text));
    Program& base = *helper.script->program;
    std::string alive = text;
    if (base.tokens.open == Tokens::Open::Constant) {
        alive.insert(0, *base.tokens.source, base.tokens.cut);
    }
    if (base.tokens.open == Tokens::Open::Comment) {
        const std::size_t close = alive.find("*/");
        alive.erase(0, close == std::string::npos ? close : close + 2);
    }
    Tokens own = lexed(std::move(alive));
    if (base.swallows(own.list) && !reaches(helper, base.unclosed)) return program(lex({}), &base);
    const auto& all = base.tokens.list;
    const auto settled = all.begin() + static_cast<std::ptrdiff_t>(base.settled);
    // All but the end, and a constant that goes on.
    const std::ptrdiff_t dropped = base.tokens.open == Tokens::Open::Constant ? 2 : 1;
    own.list.insert(own.list.begin(), settled, all.end() - dropped);
    auto made = program(std::move(own), &base);
    // A function of the helper that calls one of these means another there than here.
    const bool shared = std::ranges::none_of(made->functions, [&](const Function& function) {
        return base.findSettled(function.name) == nullptr && helper.called.contains(function.name);
    });
    if (shared) return made;
    own = std::move(made->tokens);
    own.list.insert(own.list.begin(), all.begin(), settled);
    return program(std::move(own));
}

void ScriptLibrary::build(Command& command, Helper& helper, const fs::path& path,
                          std::string_view text) {
    Script& script = command.script;
    if (full()) {
        script.error = kFull;
        return;
    }
    PreprocessorState state = helper.state;
    std::string expanded = preprocessScript(sources_, path, frameText(text), state);
    pay(state, helper.state);
    // What the helper says already stands in a list of its own.
    script.complaints = helper.script != nullptr && state.unsupported == helper.state.unsupported
                            ? helper.script->complaints
                            : listed(std::move(state.unsupported));
    script.program = onHelper(helper, expanded);
    if (helper.script != nullptr) command.helperMain = script.program->find("main");
    command.frame = script.program->find(kFrameFunction);
    settle(script.making);
}

Command& ScriptLibrary::command(std::string_view rawHelper, std::string_view text) {
    key_.assign(rawHelper).append(1, '\0').append(text);
    const auto known = commands_.find(key_);
    if (known != commands_.end()) return known->second;
    Command& command = commands_[key_];
    if (rawHelper.empty()) {
        const fs::path path = sources_.paths.root() / kFrameFile;
        Helper none;
        none.state.imported.insert(&sources_.source(path));
        build(command, none, path, text);
        return command;
    }
    fs::path relative;
    if (!relativeScriptPath(rawHelper, relative)) {
        command.script.error = "unsafe animation script path";
        return command;
    }
    const fs::path path = sources_.paths.locate(rawHelper, relative);
    Helper& found = helper(path);
    command.helper = &found;
    if (!found.script->program) {
        command.script.error = "animation helper not found: " + PathEncoding::utf8(path);
    }
    build(command, found, path, text);
    return command;
}

}  // namespace port::script
