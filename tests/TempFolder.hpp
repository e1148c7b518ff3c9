#pragma once

// A folder of a test's own, removed with everything in it.

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace tindrel::test {

// A path as the system spells it, in UTF-8.
inline std::string text(const std::filesystem::path& path) {
    const std::u8string spelled = path.u8string();
    return {spelled.begin(), spelled.end()};
}

class TempFolder {
  public:
    TempFolder() {
        static std::atomic<int> counter{0};
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        path_ = std::filesystem::temp_directory_path() /
                ("tindrel-test-" + std::to_string(now) + "-" + std::to_string(counter++));
        std::filesystem::create_directories(path_);
        path_ = std::filesystem::canonical(path_);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    // Names are UTF-8, where the system asks for more than bytes.
    [[nodiscard]] std::filesystem::path below(std::string_view relative) const {
        return path_ / std::u8string(relative.begin(), relative.end());
    }

    // Writes a file below the folder, with its parents; returns its path.
    std::filesystem::path write(std::string_view relative, std::string_view content) const {
        const std::filesystem::path file = below(relative);
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary)
            .write(content.data(), static_cast<std::streamsize>(content.size()));
        return file;
    }

    // Its content with the system's line ends as line feeds.
    [[nodiscard]] std::string read(std::string_view relative) const {
        std::ifstream in(below(relative), std::ios::binary);
        std::string content{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
#ifdef _WIN32
        std::string text;
        for (const char c : content) {
            if (c == '\n' && text.ends_with('\r')) text.pop_back();
            text += c;
        }
        content = std::move(text);
#endif
        return content;
    }

  private:
    std::filesystem::path path_;
};

}  // namespace tindrel::test
