#include "ScriptCheck.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <optional>
#include <set>
#include <utility>

#include "ScriptLibrary.hpp"
#include "ScriptPaths.hpp"

namespace port::script {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBytesPerToken = 4;
constexpr std::size_t kBytesPerName = 16;
// So many bytes of a piece's place are looked up in the time.
constexpr std::size_t kPlacePerByte = 8;
// Bytes of pieces that are kept; the largest games have below 20 MiB of text.
constexpr std::size_t kMaxPieces = std::size_t{64} << 20U;

// A call that is open, or a mere parenthesis, and the texts among its arguments so far.
struct OpenCall {
    struct Text {
        std::string_view text;
        std::size_t index;
    };
    std::string_view function;  // empty for a parenthesis
    std::size_t token = 0;      // its name
    std::size_t arguments = 1;
    std::vector<Text> texts;
};

// What of a kind of brackets is opened and not closed; below 0 if more are closed.
std::ptrdiff_t balance(const Tokens& tokens, Word left, Word right) {
    std::ptrdiff_t open = 0;
    for (const Tok& token : tokens.list) {
        open += std::ptrdiff_t{token.is(left)} - std::ptrdiff_t{token.is(right)};
    }
    return open;
}

// Whether the tokens mean the same whatever stands around them: nothing is left open, and the last
// of them ends a definition. Some scans count a brace in a constant, so there must be none.
bool standsAlone(const Tokens& tokens) {
    if (tokens.open != Tokens::Open::Nothing) return false;
    std::size_t braces = 0;
    std::size_t parens = 0;
    for (const Tok& token : tokens.list) {
        if (token.k == TK::Str && token.word != Word::None) return false;
        if (token.is(Word::LeftBrace)) ++braces;
        if (token.is(Word::LeftParen)) ++parens;
        if (token.is(Word::RightBrace) && braces > 0) --braces;
        if (token.is(Word::RightParen) && parens > 0) --parens;
    }
    if (braces > 0 || parens > 0) return false;
    // The very last one is the text's end.
    if (tokens.list.size() == 1) return true;
    const Tok& last = tokens.list[tokens.list.size() - 2];
    return last.is(Word::RightBrace) || last.is(Word::Semicolon);
}

std::size_t weight(const CheckedFunction& function) {
    std::size_t bytes = sizeof(CheckedFunction) + function.name.size() +
                        function.mended.size() * sizeof(MendedPlace);
    for (const std::string& name : function.calls) bytes += sizeof(std::string) + name.size();
    for (const ScriptBreak& found : function.breaks) {
        bytes += sizeof(ScriptBreak) + found.error.size() + found.token.size() +
                 found.file.native().size();
    }
    return bytes;
}

MendedPlace placeOf(ScriptMend mend, LineOrigin line, const LineOrigins& origins) {
    return {mend, *origins.files[line.file], line.line};
}

// Numbers as they stand in memory.
template <typename... Numbers>
void appendBytes(std::string& out, Numbers... numbers) {
    (out.append(std::bit_cast<std::array<char, sizeof numbers>>(numbers).data(), sizeof numbers),
     ...);
}

bool isBlankLines(std::string_view text) {
    return text.find_first_not_of('\n') == text.npos;
}

// The text of the segments, whose lines `origins` gets. Their files are those from `firstFile` on.
std::string join(std::span<const ExpandedText::Segment> segments, LineOrigins& origins,
                 std::size_t firstFile = 0) {
    std::string text;
    for (const ExpandedText::Segment& segment : segments) {
        text += segment.text;
        for (std::uint32_t i = 0; i < segment.lines; ++i) {
            origins.lines.push_back({static_cast<std::uint32_t>(firstFile) + segment.origin.file,
                                     segment.origin.line + i});
        }
    }
    return text;
}

}  // namespace

const CheckedFunction* CheckedScript::find(std::string_view lowerName) const {
    const auto found = std::find_if(functions.begin(), functions.end(),
                                    [&](const auto* f) { return f->name == lowerName; });
    return found == functions.end() ? nullptr : *found;
}

ExpandedText ScriptCheck::expand(ScriptSource& source, PreprocessorState& state) {
    const std::size_t consumed = state.consumed;
    const std::size_t known = state.macros.size() + state.funcMacros.size() + state.imported.size();
    ExpandedText expanded = preprocess(sources_, source, state);
    work_ += state.consumed - consumed + known * kBytesPerName;
    return expanded;
}

std::unique_ptr<Program> ScriptCheck::program(std::string text, Names& names, Program* base) {
    work_ += text.size();
    lineText_ = nullptr;
    return std::make_unique<Program>(lex(std::move(text)), names, base);
}

// Takes the pieces that `text` begins with; gives the number of segments.
std::size_t ScriptCheck::takePieces(const ExpandedText& text) {
    const Segments segments = text.segments;
    for (std::size_t from = 0, end = 0; from < segments.size(); from = end) {
        const std::uint32_t file = segments[from].origin.file;
        std::size_t begin = segments.size();  // of what is not blank
        for (end = from; end < segments.size() && segments[end].origin.file == file; ++end) {
            if (begin > end && !isBlankLines(segments[end].text)) begin = end;
        }
        if (begin > end) continue;
        const Piece& found = piece(*text.files[file], segments.subspan(begin, end - begin));
        if (!found.whole) return from;
        braces_ += found.braces;
        parens_ += found.parens;
    }
    return segments.size();
}

// The piece of those segments of one file, whose functions come to the script if it was not in
// there before.
const ScriptCheck::Piece& ScriptCheck::piece(const ScriptSource& source, Segments segments) {
    place_.clear();
    for (const ExpandedText::Segment& segment : segments) {
        const std::string_view made = segment.made ? segment.text : std::string_view{};
        appendBytes(place_, segment.origin.line, segment.lines, made.size());
        place_ += made;
    }
    const auto [slot, added] = pieces_[&source].try_emplace(place_);
    Piece& found = slot->second;
    if (added) {
        LineOrigins origins{{&source.path}, {}};
        std::string text = join(segments, origins);
        for (LineOrigin& line : origins.lines) line.file = 0;
        found = read(std::move(text), origins);
        kept_ += place_.size() + sizeof(Piece);
        for (const CheckedFunction& function : found.functions) kept_ += weight(function);
    }
    work_ += place_.size() / kPlacePerByte + found.names.size();
    if (found.whole && std::exchange(found.script, scripts_) != scripts_) {
        for (std::size_t i = 0; i < found.names.size(); ++i) {
            if (defines(found.names[i])) checked_.functions.push_back(&found.functions[i]);
        }
    }
    return found;
}

ScriptCheck::Piece ScriptCheck::read(std::string text, const LineOrigins& origins) {
    Piece piece;
    Names names;
    const std::unique_ptr<Program> own = program(std::move(text), names, nullptr);
    const Tokens& tokens = own->tokens;
    // A command must not find its own function here.
    if (!standsAlone(tokens) || own->find(kFrameFunction) != nullptr) return piece;
    for (Function& function : own->functions) {
        piece.functions.push_back(check(function, origins));
        piece.names.push_back(nameOf(function));
        const std::vector<std::size_t>& errors = function.errorTokens;
        const bool ranOut = std::ranges::find(errors, tokens.list.size() - 1) != errors.end();
        if (ranOut) return {};
    }
    piece.whole = true;
    piece.braces = balance(tokens, Word::LeftBrace, Word::RightBrace);
    piece.parens = balance(tokens, Word::LeftParen, Word::RightParen);
    if (told_) tellTexts(tokens, origins);
    return piece;
}

std::size_t ScriptCheck::nameOf(const Function& function) {
    const auto [slot, added] = names_.try_emplace(function.name, definers_.size());
    if (added) definers_.push_back(0);
    return slot->second;
}

// Whether the script in hand gets that name now: the first definition holds.
bool ScriptCheck::defines(std::size_t name) {
    return std::exchange(definers_[name], scripts_) != scripts_;
}

// Goes by the brackets alone, so that what breaks off is heard of too.
void ScriptCheck::tellTexts(const Tokens& tokens, const LineOrigins& origins) {
    const std::vector<Tok>& list = tokens.list;
    std::vector<OpenCall> open;
    const auto close = [&](const OpenCall& call) {
        if (call.texts.empty()) return;
        const std::size_t line = lineOf(tokens, call.token);
        if (line >= origins.lines.size()) return;
        const LineOrigin origin = origins.lines[line];
        for (const OpenCall::Text& text : call.texts) {
            told_({call.function, text.text, text.index, call.arguments,
                   *origins.files[origin.file], origin.line});
        }
    };
    for (std::size_t i = 0; i + 1 < list.size(); ++i) {
        const Tok& token = list[i];
        if (token.is(Word::LeftBrace) || token.is(Word::RightBrace)) {
            open.clear();
        } else if (token.is(Word::LeftParen)) {
            OpenCall& call = open.emplace_back();
            if (i == 0 || list[i - 1].k != TK::Id) continue;
            call.function = list[i - 1].s;
            call.token = i - 1;
        } else if (open.empty()) {
            continue;
        } else if (token.is(Word::Comma)) {
            ++open.back().arguments;
        } else if (token.is(Word::RightParen)) {
            close(open.back());
            open.pop_back();
        } else if (token.k == TK::Str && !open.back().function.empty() &&
                   (list[i - 1].is(Word::LeftParen) || list[i - 1].is(Word::Comma)) &&
                   (list[i + 1].is(Word::RightParen) || list[i + 1].is(Word::Comma))) {
            open.back().texts.push_back({token.s, open.back().arguments - 1});
        }
    }
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
    out.name = function.name;
    std::set<std::string> calls;
    for (const CallSite& site : function.sites) calls.insert(lower(*site.name));
    out.calls.assign(calls.begin(), calls.end());
    const Tokens& tokens = function.program->tokens;
    for (std::size_t i = 0; i < function.errors.size(); ++i) {
        const std::size_t token = function.errorTokens[i];
        ScriptBreak& found = out.breaks.emplace_back();
        found.error = function.errors[i];
        found.token = tokens.list[token].s;
        const std::size_t line = lineOf(tokens, token);
        if (line >= origins.lines.size()) continue;
        const LineOrigin origin = origins.lines[line];
        found.file = *origins.files[origin.file];
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
    programNames_ = std::make_unique<Names>();
    state_ = {};
    origins_ = {};
    checked_ = {};
    functions_.clear();
    braces_ = parens_ = 0;
    ++scripts_;
    if (kept_ > kMaxPieces) {
        pieces_.clear();
        names_.clear();
        definers_.clear();
        kept_ = 0;
    }
    path_ = sources_.paths.root() / kFrameFile;
    if (raw.empty()) {
        state_.imported.insert(&sources_.source(path_));
        return checked_;
    }
    fs::path relative;
    if (!relativeScriptPath(raw, relative)) {
        checked_.error = "unsafe script path";
        return checked_;
    }
    path_ = sources_.paths.locate(raw, relative);
    ScriptSource& source = sources_.source(path_);
    state_.imported.insert(&source);
    if (!source.readable) {
        checked_.error = "script not found";
        return checked_;
    }
    MendedLines mended;
    state_.mended = &mended;
    const ExpandedText expanded = expand(source, state_);
    state_.mended = nullptr;
    checked_.files = expanded.files;
    for (const ScriptSource* const read : expanded.files) origins_.files.push_back(&read->path);
    for (const auto& [mend, line] : mended) {
        checked_.mended.push_back(placeOf(mend, line, origins_));
    }
    const Segments behind = Segments(expanded.segments).subspan(takePieces(expanded));
    program_ = program(join(behind, origins_), *programNames_, nullptr);
    const Tokens& rest = program_->tokens;
    braces_ += balance(rest, Word::LeftBrace, Word::RightBrace);
    parens_ += balance(rest, Word::LeftParen, Word::RightParen);
    checked_.closed = rest.open == Tokens::Open::Nothing && braces_ <= 0 && parens_ <= 0;
    if (told_) tellTexts(rest, origins_);
    for (Function& function : program_->functions) {
        kept_ += function.name.size();
        if (!defines(nameOf(function))) continue;
        checked_.functions.push_back(&functions_.emplace_back(check(function, origins_)));
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
    MendedLines mended;
    state.mended = &mended;
    ScriptSource source(path_, frameText(command));
    const ExpandedText expanded = expand(source, state);
    state.mended = nullptr;
    state.produced = produced;
    state.full = full;
    static const fs::path kNone;
    const std::size_t firstFile = origins.files.size();
    for (const ScriptSource* const read : expanded.files) {
        origins.files.push_back(read == &source ? &kNone : &read->path);
    }
    text += join(expanded.segments, origins, firstFile);
    const std::unique_ptr<Program> frame = program(std::move(text), *programNames_, base);
    Function* const function = frame->find(kFrameFunction);
    CheckedFunction out;
    if (function != nullptr) out = check(*function, origins);
    for (auto [mend, line] : mended) {
        line.file += static_cast<std::uint32_t>(firstFile);
        out.mended.push_back(placeOf(mend, line, origins));
    }
    const auto inCommand = [](auto& found) {
        if (found.file.empty()) found.line -= std::min(found.line, kFrameHead);
    };
    std::ranges::for_each(out.breaks, inCommand);
    std::ranges::for_each(out.mended, inCommand);
    return out;
}

}  // namespace port::script
