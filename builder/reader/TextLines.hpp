#pragma once

// The logical lines of an OpenBOR text file. Games are written by hand, so the reader is lenient:
// it rejects no file and fails no line.

#include <cstdint>
#include <deque>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tindrel {

// One logical line. All views point into the TextFile that holds it.
struct TextLine {
    std::string_view command;                // first word, as written
    std::string_view key;                    // the command in lower case
    std::span<const std::string_view> args;  // the other tokens, as written
    std::uint64_t line = 0;                  // physical line, from 1
    std::string_view text;                   // body of an "@script" block; empty elsewhere
};

// The lines of one file in file order, with the bytes that they view. Movable, not copyable.
class TextFile {
  public:
    TextFile() = default;
    explicit TextFile(std::string content);
    TextFile(TextFile&&) = default;
    TextFile& operator=(TextFile&&) = default;
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;
    ~TextFile() = default;

    [[nodiscard]] const std::vector<TextLine>& lines() const { return lines_; }
    [[nodiscard]] auto begin() const { return lines_.begin(); }
    [[nodiscard]] auto end() const { return lines_.end(); }

  private:
    friend class TextLineParser;
    // Held in deques, whose elements never move, so that views survive a move of the file.
    std::deque<std::string> texts_;
    std::vector<std::string_view> tokens_;
    std::vector<TextLine> lines_;
};

// The file's lines. One that cannot be opened, is no regular file or holds more than
// kMaxTextFileBytes has none.
inline constexpr std::uintmax_t kMaxTextFileBytes = 64ULL << 20U;
[[nodiscard]] TextFile readTextLines(const std::filesystem::path& path);

// The whole file as bytes under the same conditions; empty otherwise.
[[nodiscard]] std::string readFileBytes(const std::filesystem::path& path);

}  // namespace tindrel
