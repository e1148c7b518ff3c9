#include "ScriptPreprocessor.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include "PathEncoding.hpp"
#include "ScriptLexer.hpp"
#include "ScriptLimits.hpp"

namespace port::script {
namespace {

namespace fs = std::filesystem;

// The text of a directive without its comments; one that its line does not close stays.
std::string withoutComments(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i + 1;
        if (opensConstant(text[i])) {
            end = behindConstant(text, i);
        } else if (text.substr(i, 2) == "//") {
            break;
        } else if (text.substr(i, 2) == "/*") {
            end = text.find("*/", i + 2);
            if (end == text.npos) return out.append(text.substr(i));
            out += ' ';
            i = end + 2;
            continue;
        }
        out += text.substr(i, end - i);
        i = end;
    }
    return out;
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

class Preprocessor {
  public:
    Preprocessor(ScriptSources& sources, PreprocessorState& state, std::string& out)
        : sources_(sources), state_(state), out_(out) {}

    void file(const fs::path& path, std::string_view name, std::string_view source,
              std::vector<char>& active, int depth) {
        const LineOrigins::Line includer = enter(path);
        expand({path, name, active, depth}, source);
        origin_ = includer;
    }

  private:
    struct Place {
        const fs::path& file;
        std::string_view name;  // the same in UTF-8
        std::vector<char>& active;
        int depth;
    };
    // What an include yielded in a state that it left as it was.
    struct Remembered {
        int seen = 0;
        bool known = false;
        std::size_t from = 0;  // of the text so far
        std::size_t size = 0;
        std::size_t line = 0;  // of the origins so far
        std::size_t lines = 0;
        std::vector<std::string> reports;
    };

    void expand(const Place& place, std::string_view source) {
        if (place.depth > kMaxIncludeDepth) {
            report("preprocessor-depth");
            return append(source);
        }
        for (; !source.empty() && !state_.full; ++origin_.line) {
            const std::size_t end = source.find('\n');
            const std::string_view line = source.substr(0, end);
            source.remove_prefix(end == source.npos ? source.size() : end + 1);
            consume(line.size() + 1);
            const std::string_view text = trimmed(line);
            if (text.starts_with('#')) {
                directive(place, trimmed(text.substr(1)));
            } else if (place.active.back() != 0) {
                copy(line);
            }
        }
    }

    // The first line of a file; gives the place that was read before.
    LineOrigins::Line enter(const fs::path& path) {
        const LineOrigins::Line before = origin_;
        if (state_.origins != nullptr) {
            origin_ = {static_cast<std::uint32_t>(state_.origins->files.size()), 1};
            state_.origins->files.push_back(path);
        }
        return before;
    }

    void directive(const Place& place, std::string_view text) {
        const std::string name = lower(leadingName(text));
        const std::string_view rest = trimmed(text.substr(name.size()));
        const bool active = place.active.back() != 0;
        if (name == "ifdef" || name == "ifndef") {
            const std::string_view word = leadingName(rest);
            const bool defined = state_.macros.contains(word) || state_.funcMacros.contains(word);
            place.active.push_back(active && defined == (name == "ifdef"));
        } else if (name == "else") {
            if (place.active.size() < 2) return;
            place.active.back() = place.active[place.active.size() - 2] != 0 && !active;
        } else if (name == "endif") {
            if (place.active.size() > 1) place.active.pop_back();
        } else if (active && name == "define") {
            define(rest);
        } else if (active && (name == "include" || name == "import")) {
            bringIn(place, name, rest);
        } else if (active && name == "undef" && mends(ScriptMend::Undefine)) {
            undefine(leadingName(rest));
        } else if (active) {
            report("preprocessor:" + name);
        }
    }

    // Whether a line to which the mend applies is mended; it is noted if so.
    bool mends(ScriptMend mend) {
        if (!sources_.asWritten && state_.origins != nullptr) {
            state_.origins->mended.emplace_back(mend, origin_);
        }
        return !sources_.asWritten;
    }

    void define(std::string_view text) {
        const std::string plain = withoutComments(text);
        const bool mended = plain != text && mends(ScriptMend::MacroComment);
        const std::string_view rest = mended ? trimmed(plain) : text;
        const std::string name(leadingName(rest));
        if (name.empty()) return;
        const std::string_view behind = rest.substr(name.size());
        if (!behind.starts_with('(')) {
            const std::string_view body = trimmed(behind);
            return set(state_.macros, name, std::string(body.empty() ? "1" : body));
        }
        const std::size_t close = closingParen(behind);
        if (close == behind.npos) return report("preprocessor-function-macro-malformed:" + name);
        FunctionMacro macro;
        for (std::string_view inside = behind.substr(1, close - 1); !inside.empty();) {
            const std::size_t comma = std::min(inside.find(','), inside.size());
            const std::string_view parameter = trimmed(inside.substr(0, comma));
            if (!parameter.empty()) macro.params.emplace_back(parameter);
            inside.remove_prefix(std::min(comma + 1, inside.size()));
        }
        macro.body = trimmed(behind.substr(close + 1));
        set(state_.funcMacros, name, std::move(macro));
    }

    void undefine(std::string_view name) {
        const auto erase = [&](auto& map) {
            const auto known = map.find(name);
            if (known == map.end()) return;
            map.erase(known);
            ++state_.version;
        };
        erase(state_.macros);
        erase(state_.funcMacros);
    }

    static std::size_t closingParen(std::string_view text) {
        int depth = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '(') ++depth;
            if (text[i] == ')' && --depth == 0) return i;
        }
        return text.npos;
    }

    // A definition given again as it stands changes nothing.
    template <typename Map, typename Value>
    void set(Map& map, const std::string& name, Value value) {
        const auto [slot, added] = map.try_emplace(name);
        if (!added && slot->second == value) return;
        slot->second = std::move(value);
        ++state_.version;
    }

    void bringIn(const Place& place, const std::string& name, std::string_view raw) {
        const std::string_view path = withoutComment(raw);
        if (path.size() < raw.size() && mends(ScriptMend::IncludeComment)) raw = path;
        if (raw.size() > 1 && ((raw.front() == '"' && raw.back() == '"') ||
                               (raw.front() == '<' && raw.back() == '>'))) {
            raw = raw.substr(1, raw.size() - 2);
        }
        consume(kIncludeWeight);
        const ScriptSources::Included& file = sources_.included(place.file, place.name, raw);
        if (!file.safe) return report("unsafe-" + name + ":" + std::string(raw));
        if (name == "import") {
            if (!state_.imported.insert(file.name).second) return;
            ++state_.version;
        }
        // A missing file says nothing here: what it would have supplied is reported where it is
        // called.
        if (file.text != nullptr) includeText(file, place.depth + 1);
    }

    // Real include graphs are so dense that walking one without memory takes millions of visits. A
    // file that changed nothing when it was last brought in yields the same again in the same
    // state.
    void includeText(const ScriptSources::Included& included, int depth) {
        Remembered& memory = remembered_[included.name + '\n' + std::to_string(depth) + '\n' +
                                         std::to_string(state_.version)];
        if (memory.known) {
            repeat(memory);
            for (const std::string& line : memory.reports) report(line);
        } else {
            const std::uint64_t version = state_.version;
            const std::size_t from = out_.size();
            const std::size_t line = state_.origins ? state_.origins->lines.size() : 0;
            const std::size_t reports = state_.unsupported.size();
            std::vector<char> active{1};
            file(included.path, included.name, *included.text, active, depth);
            // Kept from the second time on: most files come once.
            if (memory.seen++ > 0 && version == state_.version && !state_.full &&
                out_.size() - from <= kMaxRemembered) {
                memory.known = true;
                memory.from = from;
                memory.size = out_.size() - from;
                memory.line = line;
                memory.lines = state_.origins ? state_.origins->lines.size() - line : 0;
                memory.reports.assign(
                    state_.unsupported.begin() + static_cast<std::ptrdiff_t>(reports),
                    state_.unsupported.end());
            }
        }
        append("\n");
    }

    void copy(std::string_view line) {
        const std::size_t limit =
            std::min(kMaxExpandedText - state_.produced, line.size() + kMaxLineGrowth);
        std::size_t work = 0;
        std::string expanded;
        std::string_view text = line;
        if (namesMacro(line, state_.macros, state_.funcMacros)) {
            expanded =
                expandMacros(std::string(line), state_.macros, state_.funcMacros, limit, work);
            text = expanded;
        }
        if (text.size() > limit && !state_.full) stop();
        append(text);
        consume(work);
        append("\n");
    }

    // Whether the text may grow by so many bytes; all of it ends if not.
    bool mayGrow(std::size_t bytes) {
        if (state_.full) return false;
        if (bytes > kMaxExpandedText - state_.produced) {
            stop();
            return false;
        }
        state_.produced += bytes;
        return true;
    }

    // Text of the line that is being read.
    void append(std::string_view text) {
        if (!mayGrow(text.size())) return;
        out_ += text;
        if (state_.origins == nullptr) return;
        std::vector<LineOrigins::Line>& lines = state_.origins->lines;
        lines.insert(lines.end(),
                     static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')), origin_);
    }

    void repeat(const Remembered& memory) {
        if (!mayGrow(memory.size)) return;
        out_.append(out_, memory.from, memory.size);
        if (state_.origins == nullptr) return;
        std::vector<LineOrigins::Line>& lines = state_.origins->lines;
        const std::size_t end = lines.size();
        lines.resize(end + memory.lines);
        std::copy_n(lines.data() + memory.line, memory.lines, lines.data() + end);
    }

    void report(std::string complaint) {
        if (state_.full || state_.unsupported.size() >= kMaxReports) return;
        state_.unsupported.push_back(std::move(complaint));
    }

    void consume(std::size_t bytes) {
        state_.consumed += bytes;
        if (state_.consumed > kMaxConsumedText && !state_.full) stop();
    }

    void stop() {
        state_.full = true;
        state_.unsupported.emplace_back("preprocessor-size");
    }

    ScriptSources& sources_;
    PreprocessorState& state_;
    std::string& out_;
    LineOrigins::Line origin_;  // of what is being read
    std::unordered_map<std::string, Remembered> remembered_;
};

}  // namespace

const std::string* ScriptSources::text(const fs::path& path) {
    const auto [slot, added] = sourceCache_.try_emplace(PathEncoding::utf8(path));
    Source& source = slot->second;
    if (added) {
        std::error_code ignored;
        std::ifstream in;
        const bool fits =
            fs::is_regular_file(path, ignored) && fs::file_size(path, ignored) <= kMaxSourceFile;
        if (fits) in.open(path, std::ios::binary);
        source.readable = in.is_open();
        if (in) source.text.assign(std::istreambuf_iterator<char>(in), {});
    }
    return source.readable ? &source.text : nullptr;
}

const ScriptSources::Included& ScriptSources::included(const fs::path& by, std::string_view byName,
                                                       std::string_view raw) {
    key_.assign(byName).append(1, '\0').append(raw);
    const auto [slot, added] = included_.try_emplace(key_);
    Included& found = slot->second;
    if (!added) return found;
    found.safe = paths.safeScriptPath(by, raw, found.path);
    if (!found.safe) return found;
    if (!paths.exists(found.path)) {
        fs::path unique = paths.scriptUniqueBasename(raw);
        if (!unique.empty()) found.path = std::move(unique);
    }
    found.name = PathEncoding::utf8(found.path);
    found.text = text(found.path);
    return found;
}

std::string preprocessScript(ScriptSources& sources, const fs::path& file, std::string_view source,
                             PreprocessorState& state, int depth) {
    std::string out;
    Preprocessor(sources, state, out)
        .file(file, PathEncoding::utf8(file), source, state.active, depth);
    return out;
}

}  // namespace port::script
