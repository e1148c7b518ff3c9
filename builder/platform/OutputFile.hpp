#pragma once

// A text file that the builder writes: the system's line ends by default, large buffer. A file that
// cannot be opened swallows its text, as a report must never end a run; a full or read-only disk
// does end it, so that nothing half-written is reported as done. A file that holds the text already
// is left untouched, so that nothing is compiled again for it.

#include <charconv>
#include <concepts>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tindrel {

enum class LineEnds { kOfSystem, kAsGiven };

class OutputFile {
  public:
    // Replaces what the file holds. Throws filesystem_error ("open") for a full or read-only disk
    // only.
    explicit OutputFile(const std::filesystem::path& path, LineEnds ends = LineEnds::kOfSystem);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    // Throws filesystem_error ("write") when the disk takes no more.
    OutputFile& operator<<(std::string_view text);
    OutputFile& operator<<(char c) { return *this << std::string_view(&c, 1); }
    template <std::integral T>
    requires(!std::same_as<T, char> && !std::same_as<T, bool>) OutputFile& operator<<(T value) {
        char digits[24];
        const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
        return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
    }

    // Writes what is still held and closes the file. Throws like operator<<. The destructor closes
    // too, but can report nothing: whoever cares for the file calls this.
    void close();

  private:
    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    void flush();
    [[nodiscard]] bool standsNext(std::string_view text);

    std::filesystem::path path_;
    LineEnds ends_;
    std::unique_ptr<std::FILE, CloseFile> file_;
    std::string buffer_;
    std::string before_;       // what the file holds in the place of the buffer
    bool unchanged_ = false;   // so far the file holds the text already
    std::uintmax_t size_ = 0;  // of the text that has left the buffer
};

}  // namespace tindrel
