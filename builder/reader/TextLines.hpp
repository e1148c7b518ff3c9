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

#include "reader/Mends.hpp"

namespace tindrel {

// One logical line. All views point into the TextFile that holds it.
struct TextLine {
    std::string_view key;                    // first word, in lower case
    std::span<const std::string_view> args;  // the other tokens, as written
    const std::string* block = nullptr;      // of an "@script" line that has one
    std::uint32_t line = 0;                  // physical line, from 1
    bool hasCapitals = false;  // the first word has, and stands ahead of the arguments as written

    // First word, as written.
    [[nodiscard]] std::string_view command() const {
        return hasCapitals ? *(args.data() - 1) : key;
    }
    // Body of an "@script" block; empty elsewhere.
    [[nodiscard]] std::string_view text() const {
        return block == nullptr ? std::string_view() : *block;
    }
};

// The lines of one file in file order, with the bytes that they view. Movable, not copyable.
class TextFile {
  public:
    TextFile() = default;
    explicit TextFile(std::string content, bool asWritten = false);
    TextFile(TextFile&&) = default;
    TextFile& operator=(TextFile&&) = default;
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;
    ~TextFile() = default;

    [[nodiscard]] const std::vector<TextLine>& lines() const { return lines_; }
    // How the lines were read, and how what they mean is to be read.
    [[nodiscard]] const Reading& reading() const { return reading_; }
    [[nodiscard]] auto begin() const { return lines_.begin(); }
    [[nodiscard]] auto end() const { return lines_.end(); }

  private:
    friend class TextLineParser;
    // Held in deques, whose elements never move, so that views survive a move of the file.
    std::deque<std::string> texts_;
    std::vector<std::string_view> tokens_;
    std::vector<TextLine> lines_;
    Reading reading_;
};

// The file's lines. One that cannot be opened, is no regular file or holds more than
// kMaxTextFileBytes has none.
inline constexpr std::uintmax_t kMaxTextFileBytes = 64ULL << 20U;
[[nodiscard]] TextFile readTextLines(const std::filesystem::path& path, bool asWritten = false);

// The whole file as bytes; empty for one that cannot be opened, is no regular file or holds more
// than `most`.
[[nodiscard]] std::string readFileBytes(const std::filesystem::path& path,
                                        std::uintmax_t most = kMaxTextFileBytes);

}  // namespace tindrel
