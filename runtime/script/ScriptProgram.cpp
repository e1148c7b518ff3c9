#include "ScriptCode.hpp"

#include <algorithm>
#include <utility>

namespace port::script {
namespace {

// For each '(' the place of its ')', else the end.
std::vector<std::size_t> matchingParens(const std::vector<Tok>& tokens) {
    std::vector<std::size_t> match(tokens.size(), tokens.size() - 1);
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].is(Word::LeftParen)) open.push_back(i);
        if (tokens[i].is(Word::RightParen) && !open.empty()) {
            match[open.back()] = i;
            open.pop_back();
        }
    }
    return match;
}

// A parameter is the last name of its segment that is no type.
std::vector<std::string> parameters(const std::vector<Tok>& tokens, std::size_t open,
                                    std::size_t close) {
    std::vector<std::string> names;
    if (close == open + 1) return names;
    std::string name;
    int depth = 1;
    for (std::size_t i = open + 1; i < close; ++i) {
        const Tok& token = tokens[i];
        if (token.is(Word::LeftParen)) ++depth;
        if (token.is(Word::RightParen)) --depth;
        if (token.is(Word::Comma) && depth == 1) names.push_back(std::exchange(name, {}));
        if (token.k == TK::Id && token.word != Word::TypeName) name = token.s;
    }
    names.push_back(std::move(name));
    return names;
}

}  // namespace

std::int32_t Names::id(std::string_view name) {
    const auto found = ids_.find(name);
    if (found != ids_.end()) return found->second;
    const auto id = static_cast<std::int32_t>(texts_.size());
    ids_.emplace(texts_.emplace_back(name), id);
    return id;
}

const ScriptText& Names::constant(std::string_view text) {
    const auto found = constants_.find(text);
    if (found != constants_.end()) return found->second;
    return constants_.emplace(text, ScriptText(text)).first->second;
}

void Function::forget() {
    code.clear();
    constants.clear();
    errors.clear();
    errorTokens.clear();
    mended.clear();
    sites.clear();
    switches.clear();
    maybes.clear();
    ranges.clear();
    bound = registers = counters = 0;
}

Program::Program(Tokens text, Names& allNames, Program* under)
    : tokens(std::move(text)), names(allNames), base(under) {
    findFunctions();
}

Function* Program::find(std::string_view name) const {
    if (base != nullptr) {
        if (Function* function = base->findSettled(name)) return function;
    }
    const auto found = byName.find(lower(name));
    return found == byName.end() ? nullptr : found->second;
}

Function* Program::findSettled(std::string_view name) const {
    Function* const function = find(name);
    return function != nullptr && function->body < settled ? function : nullptr;
}

// Only "type name (" outside braces begins a definition. Braces count by text, so that a constant
// that is nothing but a brace counts too. Statements end at true braces: behind such a constant
// nothing is settled.
void Program::findFunctions() {
    const std::vector<Tok>& list = tokens.list;
    const std::vector<std::size_t> match = matchingParens(list);
    std::size_t depth = 0;
    std::size_t opened = 0;     // the last brace outside all others
    std::size_t unsettled = 0;  // nothing is settled ahead of this place
    for (std::size_t i = 0; i < list.size(); ++i) {
        const bool brace = list[i].word == Word::LeftBrace || list[i].word == Word::RightBrace;
        if (brace && list[i].k == TK::Str) unsettled = list.size();
        if (list[i].word == Word::LeftBrace) {
            if (depth++ == 0) opened = i;
        } else if (depth > 0) {
            if (list[i].word == Word::RightBrace && --depth == 0 && i >= unsettled) settled = i + 1;
        } else if (list[i].word == Word::TypeName && list[i + 1].k == TK::Id &&
                   list[i + 2].is(Word::LeftParen)) {
            const std::size_t close = match[i + 2];
            unsettled = std::max(unsettled, close + 1);
            // Without a body it is a prototype, and the search goes on.
            if (close + 1 >= list.size() || list[close + 1].word != Word::LeftBrace) continue;
            const auto [slot, added] = byName.try_emplace(lower(list[i + 1].s));
            if (!added) continue;
            slot->second = &functions.emplace_back();
            slot->second->program = this;
            slot->second->name = slot->first;
            slot->second->body = close + 1;
            slot->second->params = parameters(list, i + 2, close);
        }
    }
    if (depth == 0 || unsettled > opened) return;
    depth_ = depth;
    if (!functions.empty() && functions.back().body == opened) unclosed = &functions.back();
}

bool Program::swallows(const std::vector<Tok>& more) const {
    std::size_t depth = depth_;
    for (std::size_t i = 0; i < more.size() && depth > 0; ++i) {
        if (more[i].word == Word::LeftBrace) ++depth;
        if (more[i].word == Word::RightBrace) --depth;
    }
    return depth > 0;
}

}  // namespace port::script
