#include "ScriptSources.hpp"

#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "PathEncoding.hpp"
#include "ScriptLimits.hpp"

namespace port::script {
namespace {

namespace fs = std::filesystem;

constexpr struct {
    std::string_view name;
    BlockKind kind;
} kDirectives[] = {
    {"ifdef", BlockKind::IfDefined}, {"ifndef", BlockKind::IfUndefined},
    {"else", BlockKind::Else},       {"endif", BlockKind::EndIf},
    {"define", BlockKind::Define},   {"undef", BlockKind::Undefine},
    {"include", BlockKind::Include}, {"import", BlockKind::Import},
};

BlockKind kindOf(std::string_view name) {
    for (const auto& directive : kDirectives) {
        if (equalsFolded(name, directive.name)) return directive.kind;
    }
    return BlockKind::Unknown;
}

// The quoted path that an include begins with if a comment follows it, else all as it stands.
std::string_view withoutComment(std::string_view include) {
    if (!include.starts_with('"') && !include.starts_with('<')) return include;
    const std::size_t end = include.find(include.front() == '<' ? '>' : '"', 1);
    if (end == include.npos) return include;
    const std::string_view behind = trimmed(include.substr(end + 1));
    const bool comment = behind.starts_with("//") || behind.starts_with("/*");
    return comment ? include.substr(0, end + 1) : include;
}

std::string closedLines(std::string text) {
    if (!text.empty() && text.back() != '\n') text += '\n';
    return text;
}

std::vector<SourceBlock> cut(std::string_view text) {
    std::vector<SourceBlock> blocks;
    std::uint32_t number = 1;
    for (std::size_t at = 0; at < text.size(); ++number) {
        const std::size_t size = text.find('\n', at) + 1 - at;
        const std::string_view whole = text.substr(at, size);
        const std::string_view line = trimmed(whole);
        if (line.starts_with('#')) {
            const std::string_view directive = trimmed(line.substr(1));
            const std::string_view name = leadingName(directive);
            blocks.push_back(
                {kindOf(name), number, 1, whole, name, trimmed(directive.substr(name.size()))});
        } else if (!blocks.empty() && blocks.back().kind == BlockKind::Lines) {
            SourceBlock& lines = blocks.back();
            lines.text = {lines.text.data(), lines.text.size() + size};
            ++lines.lines;
        } else {
            blocks.push_back({BlockKind::Lines, number, 1, whole});
        }
        at += size;
    }
    return blocks;
}

}  // namespace

ScriptSource::ScriptSource(fs::path file)
    : path(std::move(file)), folder(PathEncoding::utf8(path.parent_path())), readable(false) {}

ScriptSource::ScriptSource(fs::path file, std::string text)
    : path(std::move(file)),
      folder(PathEncoding::utf8(path.parent_path())),
      readable(true),
      text_(closedLines(std::move(text))) {
    blocks = cut(text_);
}

ScriptSource& ScriptSources::source(const fs::path& path) {
    std::unique_ptr<ScriptSource>& known = sources_[PathEncoding::utf8(path)];
    if (known) return *known;
    std::error_code ignored;
    std::ifstream in;
    const bool fits =
        fs::is_regular_file(path, ignored) && fs::file_size(path, ignored) <= kMaxSourceFile;
    if (fits) in.open(path, std::ios::binary);
    if (in.is_open()) {
        known = std::make_unique<ScriptSource>(path,
                                               std::string(std::istreambuf_iterator<char>(in), {}));
    } else {
        known = std::make_unique<ScriptSource>(path);
    }
    return *known;
}

void ScriptSources::resolve(const ScriptSource& by, SourceBlock& include) {
    if (include.resolved) return;
    include.resolved = true;
    std::string_view raw = include.rest;
    if (!asWritten) raw = withoutComment(raw);
    include.mended = raw.size() < include.rest.size();
    if (raw.size() > 1 &&
        ((raw.front() == '"' && raw.back() == '"') || (raw.front() == '<' && raw.back() == '>'))) {
        raw = raw.substr(1, raw.size() - 2);
    }
    include.rest = raw;
    key_.assign(by.folder).append(1, '\0').append(raw);
    const auto [slot, added] = included_.try_emplace(key_);
    if (added) slot->second = find(by, raw);
    include.source = slot->second;
}

ScriptSource* ScriptSources::find(const ScriptSource& by, std::string_view raw) {
    fs::path path;
    if (!paths.safeScriptPath(by.path, raw, path)) return nullptr;
    if (!paths.exists(path)) {
        fs::path unique = paths.scriptUniqueBasename(raw);
        if (!unique.empty()) path = std::move(unique);
    }
    return &source(path);
}

}  // namespace port::script
