#pragma once

// A folder of a test's own, removed with everything in it.

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace tindrel::test {

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

    // Writes a file below the folder, with its parents; returns its path.
    std::filesystem::path write(std::string_view relative, std::string_view content) const {
        const std::filesystem::path file = path_ / relative;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary)
            .write(content.data(), static_cast<std::streamsize>(content.size()));
        return file;
    }

    [[nodiscard]] std::string read(std::string_view relative) const {
        std::ifstream in(path_ / relative, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

  private:
    std::filesystem::path path_;
};

}  // namespace tindrel::test
