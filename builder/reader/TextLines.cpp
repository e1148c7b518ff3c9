#include "reader/TextLines.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <utility>

#include "PathEncoding.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

// Usual sizes, by which room is made beforehand.
constexpr std::size_t kBytesPerLine = 18;
constexpr std::size_t kBytesPerToken = 9;

constexpr std::string_view kBlockEndWord = "@end_script";

std::string_view trim(std::string_view text) {
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    return text;
}

bool isLowerCase(std::string_view word) {
    return std::none_of(word.begin(), word.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

// Eight bytes at a time: nearly all of a game's text is ASCII.
bool isAscii(std::string_view bytes) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    for (; bytes.size() >= sizeof kHighBits; bytes.remove_prefix(sizeof kHighBits)) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data(), sizeof word);
        if ((word & kHighBits) != 0) return false;
    }
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// A table, as every byte of a game's text is asked about.
constexpr std::array<bool, 256> kIsSpace = [] {
    std::array<bool, 256> table{};
    for (std::size_t c = 0; c < table.size(); ++c) table[c] = isSpace(static_cast<char>(c));
    return table;
}();

// Cuts the first run of bytes up to white space off `rest`, which must begin with none.
std::string_view takeWord(std::string_view& rest) {
    const std::string_view text = rest;
    const auto isSpaceAt = [&](std::size_t i) {
        return kIsSpace[static_cast<unsigned char>(text[i])];
    };
    std::size_t end = 0;
    while (end < text.size() && !isSpaceAt(end)) ++end;
    std::size_t next = end;
    while (next < text.size() && isSpaceAt(next)) ++next;
    rest = text.substr(next);
    return text.substr(0, end);
}

// Where the word that ends a block stands in a line of the block, behind other text or with a
// comment glued to it; npos where it does not stand in the line's code, or other text follows.
std::size_t blockEndIn(std::string_view line) {
    if (line.find('@') == std::string_view::npos) return line.npos;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const std::string_view rest = line.substr(i);
        if (rest.starts_with("//")) break;
        if (rest.starts_with("/*")) {
            const std::size_t end = rest.find("*/", 2);
            if (end == std::string_view::npos) break;
            i += end + 1;
        } else if (line[i] == '"' || line[i] == '\'') {
            const char quote = line[i];
            for (++i; i < line.size() && line[i] != quote; ++i) {
                if (line[i] == '\\') ++i;
            }
        } else if (equalsFolded(rest.substr(0, kBlockEndWord.size()), kBlockEndWord)) {
            const std::string_view behind = trim(rest.substr(kBlockEndWord.size()));
            const bool ends = behind.empty() || behind.starts_with("//") ||
                              behind.starts_with("/*") || behind.starts_with('#');
            return ends ? i : std::string_view::npos;
        }
    }
    return std::string_view::npos;
}

}  // namespace

class TextLineParser {
  public:
    TextLineParser(TextFile& file, std::string content) : file_(file) {
        content_ = keep(std::move(content));
        // Valid as a whole means valid line by line, as no line feed is part of another character.
        allUtf8_ = isAscii(content_) || PathEncoding::validUtf8(content_);
        file_.lines_.reserve(content_.size() / kBytesPerLine);
        file_.tokens_.reserve(content_.size() / kBytesPerToken);
        tokenCounts_.reserve(content_.size() / kBytesPerLine);
    }

    void parse() {
        // Token views move while their vector grows, so lines hold counts until the end.
        std::string_view rest = content_;
        while (!rest.empty()) {
            const std::size_t feed = rest.find('\n');
            parsePhysicalLine(rest.substr(0, feed));
            rest.remove_prefix(feed == std::string_view::npos ? rest.size() : feed + 1);
        }
        closeBlock();
        std::size_t first = 0;
        for (std::size_t i = 0; i < file_.lines_.size(); ++i) {
            if (file_.lines_[i].hasCapitals) ++first;
            file_.lines_[i].args = std::span(file_.tokens_).subspan(first, tokenCounts_[i]);
            first += tokenCounts_[i];
        }
    }

  private:
    std::string_view keep(std::string text) { return file_.texts_.emplace_back(std::move(text)); }

    void parsePhysicalLine(std::string_view raw) {
        ++lineNumber_;
        // Each line is decoded for itself: one file may hold UTF-8 and Windows-1252 lines.
        if (!allUtf8_ && !PathEncoding::validUtf8(raw)) raw = keep(PathEncoding::text(raw));
        if (lineNumber_ == 1 && raw.substr(0, 3) == "\xEF\xBB\xBF") raw.remove_prefix(3);
        if (!raw.empty() && raw.back() == '\r') raw.remove_suffix(1);
        const std::string_view trimmed = trim(raw);
        if (trimmed.empty() || trimmed.substr(0, 2) == "//") return;

        std::string_view rest = trimmed;
        std::string_view word = takeWord(rest);
        if (inBlock_ && !equalsFolded(word, kBlockEndWord)) return readBlockLine(raw);
        if (word.front() != '@') {
            // No directive.
        } else if (equalsFolded(word, kBlockEndWord)) {
            closeBlock();
        } else if (equalsFolded(word, "@script")) {
            inBlock_ = true;
            blockLine_ = file_.lines_.size();
        } else if (equalsFolded(word, "@cmd")) {
            appendLine(word);
            splitAnimationCommand(trimmed.substr(word.size()));
            return;
        }
        const std::size_t comment = trimmed.find('#');
        if (comment != std::string_view::npos) {
            rest = trim(trimmed.substr(0, comment));
            if (rest.empty()) return;
            word = takeWord(rest);
        }
        appendLine(word);
        while (!rest.empty()) appendToken(takeWord(rest));
    }

    void readBlockLine(std::string_view raw) {
        const std::size_t end = blockEndIn(raw);
        const bool ends =
            end != std::string_view::npos && file_.reading_.mends(Mend::kBlockEnd, lineNumber_);
        const std::string_view text = raw.substr(0, ends ? end : raw.size());
        if (!trim(text).empty()) block_.append(text).push_back('\n');
        if (!ends) return;
        closeBlock();
        appendLine(raw.substr(end, kBlockEndWord.size()));
    }

    void appendLine(std::string_view command) {
        TextLine& line = file_.lines_.emplace_back();
        line.hasCapitals = !isLowerCase(command);
        if (line.hasCapitals) file_.tokens_.push_back(command);
        line.key = line.hasCapitals ? keep(toLower(command)) : command;
        line.line = lineNumber_;
        tokenCounts_.push_back(0);
    }

    void appendToken(std::string_view token) {
        file_.tokens_.push_back(token);
        ++tokenCounts_.back();
    }

    // Splits on white space outside quotes and parentheses; quote marks stay in the token. '#'
    // outside both begins a comment.
    void splitAnimationCommand(std::string_view tail) {
        char quote = 0;
        std::uint32_t depth = 0;  // unsigned on purpose: a stray ')' wraps and ends the splitting
        std::size_t start = 0;
        std::size_t i = 0;
        const auto close = [&](std::size_t end) {
            if (end > start) appendToken(tail.substr(start, end - start));
        };
        for (; i < tail.size(); ++i) {
            const char c = tail[i];
            if (quote != 0) {
                if (c == '\\' && i + 1 < tail.size()) {
                    ++i;
                } else if (c == quote) {
                    quote = 0;
                }
                continue;
            }
            if (c == '\'' || c == '"') {
                quote = c;
                continue;
            }
            if (c == '#' && depth == 0) break;
            if (c == '(') ++depth;
            if (c == ')') --depth;
            if (depth == 0 && isSpace(c)) {
                close(i);
                start = i + 1;
            }
        }
        close(i);
    }

    void closeBlock() {
        if (!inBlock_) return;
        inBlock_ = false;
        file_.lines_[blockLine_].block = &file_.texts_.emplace_back(std::exchange(block_, {}));
    }

    TextFile& file_;
    std::string_view content_;
    bool allUtf8_ = false;
    std::vector<std::uint32_t> tokenCounts_;
    std::uint32_t lineNumber_ = 0;
    bool inBlock_ = false;
    std::size_t blockLine_ = 0;
    std::string block_;
};

TextFile::TextFile(std::string content, bool asWritten) : reading_(asWritten) {
    TextLineParser(*this, std::move(content)).parse();
}

std::string readFileBytes(const std::filesystem::path& path, std::uintmax_t most) {
    // To ask for the size of anything but a regular file is an error.
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > most) return {};
    std::ifstream in(path, std::ios::binary);
    std::string content(static_cast<std::size_t>(size), '\0');
    in.read(content.data(), static_cast<std::streamsize>(content.size()));
    content.resize(static_cast<std::size_t>(std::max<std::streamsize>(in.gcount(), 0)));
    return content;
}

TextFile readTextLines(const std::filesystem::path& path, bool asWritten) {
    return TextFile(readFileBytes(path), asWritten);
}

}  // namespace tindrel
