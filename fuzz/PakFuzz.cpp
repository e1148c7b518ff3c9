#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "Require.hpp"
#include "input/PakExtraction.hpp"
#include "platform/Process.hpp"
#include "platform/RemoveTree.hpp"

namespace fs = std::filesystem;
using tindrel::fuzz::require;

namespace {

constexpr tindrel::ExtractionLimits kLimits = {64, 1U << 20U};

class WorkFolder {
  public:
    WorkFolder()
        : path_(fs::temp_directory_path() /
                ("tindrel-pak-fuzz-" + std::to_string(tindrel::processId()))) {
        fs::create_directories(path_);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder() { tindrel::removeTree(path_); }

    [[nodiscard]] const fs::path& path() const { return path_; }

  private:
    fs::path path_;
};

long entriesOf(const fs::path& folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const WorkFolder work;
    const fs::path pak = work.path() / "game.pak";
    const fs::path out = work.path() / "out";
    const fs::path outside = work.path() / "outside";
    std::ofstream(pak, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    fs::create_directory(outside);
    fs::create_directories(out / "data");
    fs::create_directory_symlink("../../outside", out / "data" / "l");

    std::string error;
    const bool done = tindrel::extractPak(pak, out, &error, kLimits);
    require(done == error.empty(), "a failure has a message, success has none");
    require(entriesOf(work.path()) == 3, "nothing lies beside the output");
    require(entriesOf(outside) == 0, "nothing was written through the link");
    require(entriesOf(out) == 1, "everything lies below data");
    std::uintmax_t files = 0;
    std::uintmax_t bytes = 0;
    std::uintmax_t folders = 0;
    for (const auto& entry : fs::recursive_directory_iterator(out / "data")) {
        if (entry.is_symlink()) continue;
        if (entry.is_directory()) ++folders;
        if (!entry.is_regular_file()) continue;
        ++files;
        bytes += entry.file_size();
    }
    require(!done || files > 0, "success means a file");
    require(files <= kLimits.files && folders <= kLimits.files, "files and folders are limited");
    require(bytes <= kLimits.bytes, "bytes are limited");
    tindrel::removeTree(out);
    require(!fs::exists(out), "the output can be removed");
    return 0;
}
