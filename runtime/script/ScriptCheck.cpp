#include "ScriptCheck.hpp"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <utility>

#include "PathEncoding.hpp"
#include "ScriptLibrary.hpp"
#include "ScriptPaths.hpp"

namespace port::script {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBytesPerToken = 4;
constexpr std::size_t kBytesPerName = 16;

// Whether the text ends with nothing open: no comment, constant, brace or parenthesis.
bool closed(const Tokens& tokens) {
    if (tokens.open != Tokens::Open::Nothing) return false;
    std::ptrdiff_t braces = 0;
    std::ptrdiff_t parens = 0;
    for (const Tok& token : tokens.list) {
        braces += std::ptrdiff_t{token.is(Word::LeftBrace)} - token.is(Word::RightBrace);
        parens += std::ptrdiff_t{token.is(Word::LeftParen)} - token.is(Word::RightParen);
    }
    return braces <= 0 && parens <= 0;
}

MendedPlace placeOf(ScriptMend mend, LineOrigins::Line line, const LineOrigins& origins) {
    return {mend, origins.files[line.file], line.line};
}

}  // namespace

const CheckedFunction* CheckedScript::find(std::string_view lowerName) const {
    const auto found = std::find_if(functions.begin(), functions.end(),
                                    [&](const auto& f) { return f.name == lowerName; });
    return found == functions.end() ? nullptr : &*found;
}

std::string ScriptCheck::expand(std::string_view text, PreprocessorState& state) {
    const std::size_t consumed = state.consumed;
    const std::size_t known = state.macros.size() + state.funcMacros.size() + state.imported.size();
    std::string expanded = preprocessScript(sources_, path_, text, state);
    work_ += state.consumed - consumed + known * kBytesPerName;
    return expanded;
}

std::unique_ptr<Program> ScriptCheck::program(std::string text, Program* base) {
    work_ += text.size();
    lineText_ = nullptr;
    auto made = std::make_unique<Program>(lex(std::move(text)), *names_, base);
    for (const auto& [name, function] : made->byName) functionNames_[function] = name;
    return made;
}

// The line of the text that `token` is a part of, from 0. The value of a constant with escapes
// stands elsewhere: then the line of the last token in front of it.
std::size_t ScriptCheck::lineOf(const Tokens& tokens, std::size_t token) {
    const std::string& text = *tokens.source;
    const auto inText = [&](const Tok& tok) {
        const std::less_equal<> notBehind;
        return tok.s.data() != nullptr && notBehind(text.data(), tok.s.data()) &&
               notBehind(tok.s.data(), text.data() + text.size());
    };
    while (token > 0 && !inText(tokens.list[token])) --token;
    if (!inText(tokens.list[token])) return 0;
    if (lineText_ != &text) {
        lineText_ = &text;
        lineEnds_.clear();
        for (std::size_t at = text.find('\n'); at != text.npos; at = text.find('\n', at + 1)) {
            lineEnds_.push_back(at);
        }
    }
    const auto at = static_cast<std::size_t>(tokens.list[token].s.data() - text.data());
    return static_cast<std::size_t>(std::ranges::lower_bound(lineEnds_, at) - lineEnds_.begin());
}

CheckedFunction ScriptCheck::check(Function& function, const LineOrigins& origins) {
    work_ += compile(function, nullptr, sources_.asWritten) * kBytesPerToken;
    CheckedFunction out;
    out.name = functionNames_[&function];
    std::set<std::string> calls;
    for (const CallSite& site : function.sites) {
        if (site.user != nullptr) calls.insert(functionNames_[site.user]);
    }
    out.calls.assign(calls.begin(), calls.end());
    const Tokens& tokens = function.program->tokens;
    for (std::size_t i = 0; i < function.errors.size(); ++i) {
        const std::size_t token = function.errorTokens[i];
        ScriptBreak& found = out.breaks.emplace_back();
        found.error = function.errors[i];
        found.token = tokens.list[token].s;
        const std::size_t line = lineOf(tokens, token);
        if (line >= origins.lines.size()) continue;
        const LineOrigins::Line origin = origins.lines[line];
        found.file = origins.files[origin.file];
        found.line = origin.line;
    }
    for (const auto& [token, mend] : function.mended) {
        const std::size_t line = lineOf(tokens, token);
        if (line < origins.lines.size()) {
            out.mended.push_back(placeOf(mend, origins.lines[line], origins));
        }
    }
    return out;
}

const CheckedScript& ScriptCheck::file(std::string_view raw) {
    program_.reset();
    functionNames_.clear();
    names_ = std::make_unique<Names>();
    state_ = {};
    origins_ = {};
    checked_ = {};
    path_ = sources_.paths.root() / kFrameFile;
    if (raw.empty()) {
        state_.imported.insert(PathEncoding::utf8(path_));
        return checked_;
    }
    fs::path relative;
    if (!relativeScriptPath(raw, relative)) {
        checked_.error = "unsafe script path";
        return checked_;
    }
    path_ = sources_.paths.locate(raw, relative);
    state_.imported.insert(PathEncoding::utf8(path_));
    const std::string* const text = sources_.text(path_);
    if (text == nullptr) {
        checked_.error = "script not found";
        return checked_;
    }
    state_.origins = &origins_;
    program_ = program(expand(*text, state_), nullptr);
    state_.origins = nullptr;
    checked_.files = origins_.files;
    for (const auto& [mend, line] : origins_.mended) {
        checked_.mended.push_back(placeOf(mend, line, origins_));
    }
    checked_.closed = closed(program_->tokens);
    for (Function& function : program_->functions) {
        checked_.functions.push_back(check(function, origins_));
    }
    return checked_;
}

CheckedFunction ScriptCheck::command(std::string_view command) {
    if (!checked_.error.empty()) return {};
    // Without a directive a text leaves the macros as they are, which spares their copy.
    const bool mayDefine = command.find('#') != std::string_view::npos;
    std::optional<PreprocessorState> copy;
    if (mayDefine) {
        copy = state_;
        work_ +=
            (copy->macros.size() + copy->funcMacros.size() + copy->imported.size()) * kBytesPerName;
    }
    PreprocessorState& state = mayDefine ? *copy : state_;
    const std::size_t produced = state.produced;
    const bool full = state.full;
    LineOrigins origins;
    Program* base = program_.get();
    std::string text;
    // The last token is the text's end.
    if (base != nullptr && base->settled + 1 != base->tokens.list.size()) {
        // What the script leaves unsettled takes the command in.
        text = *base->tokens.source;
        origins = origins_;
        base = nullptr;
    }
    const std::size_t ownFile = origins.files.size();
    state.origins = &origins;
    text += expand(frameText(command), state);
    state.origins = nullptr;
    state.produced = produced;
    state.full = full;
    origins.files[ownFile].clear();
    const std::unique_ptr<Program> frame = program(std::move(text), base);
    Function* const function = frame->find(kFrameFunction);
    CheckedFunction out;
    if (function != nullptr) out = check(*function, origins);
    for (const auto& [mend, line] : origins.mended) {
        out.mended.push_back(placeOf(mend, line, origins));
    }
    const auto inCommand = [](auto& found) {
        if (found.file.empty()) found.line -= std::min(found.line, kFrameHead);
    };
    std::ranges::for_each(out.breaks, inCommand);
    std::ranges::for_each(out.mended, inCommand);
    for (Function& part : frame->functions) functionNames_.erase(&part);
    return out;
}

}  // namespace port::script
