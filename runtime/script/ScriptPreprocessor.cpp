#include "ScriptPreprocessor.hpp"

#include <algorithm>
#include <functional>
#include <memory_resource>
#include <unordered_map>
#include <utility>

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

constexpr std::string_view kLineBreak = "\n";

class Preprocessor {
  public:
    Preprocessor(ScriptSources& sources, PreprocessorState& state, ExpandedText& out)
        : sources_(sources), state_(state), out_(out) {}

    void file(ScriptSource& source, std::vector<char>& active, int depth) {
        const LineOrigin includer = origin_;
        origin_ = {static_cast<std::uint32_t>(out_.files.size()), 1};
        out_.files.push_back(&source);
        if (depth > kMaxIncludeDepth) {
            report("preprocessor-depth");
            for (const SourceBlock& block : source.blocks) {
                origin_.line = block.line;
                append(block.text, block.lines);
            }
        } else {
            expand({source, active, depth});
        }
        origin_ = includer;
    }

  private:
    struct Place {
        ScriptSource& source;
        std::vector<char>& active;
        int depth;
    };
    // At a file, in a state.
    struct Arrival {
        const ScriptSource* source;
        std::uint64_t version;
        int depth;
        bool operator==(const Arrival&) const = default;
    };
    struct ArrivalHash {
        std::size_t operator()(const Arrival& arrival) const {
            const auto depth = static_cast<std::size_t>(arrival.depth);
            return std::hash<const ScriptSource*>{}(arrival.source) +
                   static_cast<std::size_t>(arrival.version) * (kMaxIncludeDepth + 2) + depth;
        }
    };
    // What an include yielded in a state that it left as it was.
    struct Remembered {
        int seen = 0;
        bool known = false;
        std::size_t from = 0;  // of the segments so far
        std::size_t segments = 0;
        std::size_t bytes = 0;
        std::vector<std::string> reports;
    };

    void expand(const Place& place) {
        for (SourceBlock& block : place.source.blocks) {
            if (state_.full) return;
            origin_.line = block.line;
            if (block.kind == BlockKind::Lines) {
                lines(block, place.active.back() != 0);
            } else {
                consume(block.text.size());
                directive(place, block);
            }
        }
    }

    void lines(const SourceBlock& block, bool active) {
        const bool named = active && !(state_.macros.empty() && state_.funcMacros.empty());
        const bool fits = block.text.size() <= kMaxConsumedText - state_.consumed &&
                          block.text.size() <= kMaxExpandedText - state_.produced;
        if (fits && !named) {
            consume(block.text.size());
            if (active) append(block.text, block.lines);
            return;
        }
        for (std::string_view rest = block.text; !rest.empty() && !state_.full; ++origin_.line) {
            const std::string_view line = rest.substr(0, rest.find('\n') + 1);
            rest.remove_prefix(line.size());
            consume(line.size());
            if (active) copy(line);
        }
    }

    void directive(const Place& place, SourceBlock& block) {
        std::vector<char>& open = place.active;
        const bool active = open.back() != 0;
        switch (block.kind) {
            case BlockKind::IfDefined:
            case BlockKind::IfUndefined:
                open.push_back(active &&
                               defines(block.rest) == (block.kind == BlockKind::IfDefined));
                return;
            case BlockKind::Else:
                if (open.size() > 1) open.back() = open[open.size() - 2] != 0 && !active;
                return;
            case BlockKind::EndIf:
                if (open.size() > 1) open.pop_back();
                return;
            default:
                if (active) order(place, block);
        }
    }

    // A directive that is no condition.
    void order(const Place& place, SourceBlock& block) {
        if (block.kind == BlockKind::Define) return define(block.rest);
        if (block.kind == BlockKind::Include || block.kind == BlockKind::Import) {
            return bringIn(place, block);
        }
        if (block.kind == BlockKind::Undefine && mends(ScriptMend::Undefine)) {
            return undefine(leadingName(block.rest));
        }
        report("preprocessor:" + lower(block.name));
    }

    [[nodiscard]] bool defines(std::string_view text) const {
        const std::string_view word = leadingName(text);
        return state_.macros.contains(word) || state_.funcMacros.contains(word);
    }

    // Whether a line to which the mend applies is mended; it is noted if so.
    bool mends(ScriptMend mend) {
        if (!sources_.asWritten && state_.mended != nullptr) {
            state_.mended->emplace_back(mend, origin_);
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

    void bringIn(const Place& place, SourceBlock& block) {
        sources_.resolve(place.source, block);
        if (block.mended) mends(ScriptMend::IncludeComment);
        consume(kIncludeWeight);
        const bool once = block.kind == BlockKind::Import;
        if (block.source == nullptr) {
            return report((once ? "unsafe-import:" : "unsafe-include:") + std::string(block.rest));
        }
        if (once) {
            if (!state_.imported.insert(block.source).second) return;
            ++state_.version;
        }
        // A missing file says nothing here: what it would have supplied is reported where it is
        // called.
        if (block.source->readable) include(*block.source, place.depth + 1);
    }

    // Real include graphs are so dense that walking one without memory takes millions of visits. A
    // file that changed nothing when it was last brought in yields the same again in the same
    // state.
    void include(ScriptSource& source, int depth) {
        Remembered& memory = remembered_[{&source, state_.version, depth}];
        if (memory.known) {
            repeat(memory);
            for (const std::string& line : memory.reports) report(line);
        } else {
            const std::uint64_t version = state_.version;
            const std::size_t from = out_.segments.size();
            const std::size_t produced = state_.produced;
            const std::size_t reports = state_.unsupported.size();
            std::vector<char> active{1};
            file(source, active, depth);
            // Kept from the second time on: most files come once.
            const std::size_t bytes = state_.produced - produced;
            if (memory.seen++ > 0 && version == state_.version && !state_.full &&
                bytes <= kMaxRemembered) {
                memory.known = true;
                memory.from = from;
                memory.segments = out_.segments.size() - from;
                memory.bytes = bytes;
                memory.reports.assign(
                    state_.unsupported.begin() + static_cast<std::ptrdiff_t>(reports),
                    state_.unsupported.end());
            }
        }
        append(kLineBreak, 1, true);
    }

    void copy(std::string_view line) {
        if (!namesMacro(line, state_.macros, state_.funcMacros)) return append(line, 1);
        const std::string_view text = line.substr(0, line.size() - kLineBreak.size());
        const std::size_t limit =
            std::min(kMaxExpandedText - state_.produced, text.size() + kMaxLineGrowth);
        std::size_t work = 0;
        std::string expanded =
            expandMacros(std::string(text), state_.macros, state_.funcMacros, limit, work);
        if (expanded.size() > limit && !state_.full) stop();
        expanded += kLineBreak;
        if (!state_.full) append(kept(expanded), 1, true);
        consume(work);
    }

    // Lines of their own that follow each other stand beside each other in memory.
    std::string_view kept(std::string_view text) {
        auto* const bytes = static_cast<char*>(out_.memory->allocate(text.size(), 1));
        std::copy(text.begin(), text.end(), bytes);
        return {bytes, text.size()};
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

    // Lines from the one on that is being read.
    void append(std::string_view text, std::uint32_t lines, bool made = false) {
        if (!mayGrow(text.size())) return;
        if (!out_.segments.empty()) {
            ExpandedText::Segment& last = out_.segments.back();
            const bool goesOn = last.text.data() + last.text.size() == text.data() &&
                                last.made == made && last.origin.file == origin_.file &&
                                last.origin.line + last.lines == origin_.line;
            if (goesOn) {
                last.text = {last.text.data(), last.text.size() + text.size()};
                last.lines += lines;
                return;
            }
        }
        out_.segments.push_back({text, origin_, lines, made});
    }

    void repeat(const Remembered& memory) {
        consume(memory.segments * kIncludeWeight);
        if (!mayGrow(memory.bytes)) return;
        std::vector<ExpandedText::Segment>& segments = out_.segments;
        const std::size_t end = segments.size();
        segments.resize(end + memory.segments);
        std::copy_n(segments.data() + memory.from, memory.segments, segments.data() + end);
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
    ExpandedText& out_;
    LineOrigin origin_;  // of what is being read
    std::pmr::monotonic_buffer_resource memory_;
    std::pmr::unordered_map<Arrival, Remembered, ArrivalHash> remembered_{&memory_};
};

}  // namespace

std::string ExpandedText::joined() const {
    std::string text;
    for (const Segment& segment : segments) text += segment.text;
    return text;
}

ExpandedText preprocess(ScriptSources& sources, ScriptSource& source, PreprocessorState& state) {
    ExpandedText out;
    Preprocessor(sources, state, out).file(source, state.active, 0);
    return out;
}

std::string preprocessScript(ScriptSources& sources, const fs::path& file, std::string_view source,
                             PreprocessorState& state) {
    ScriptSource own(file, std::string(source));
    return preprocess(sources, own, state).joined();
}

}  // namespace port::script
