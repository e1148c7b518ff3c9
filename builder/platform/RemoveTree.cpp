#include "platform/RemoveTree.hpp"

#include <cstdint>
#include <exception>
#include <string>

#include "platform/FolderListing.hpp"
#include "platform/LinkStatus.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

bool isRealDirectory(const fs::path& path) {
    std::error_code error;
    return linkStatus(path, error).type() == fs::file_type::directory;
}

void makeWritable(const fs::path& path) {
    std::error_code ignored;
    fs::permissions(path, fs::perms::owner_all, fs::perm_options::add, ignored);
}

template <typename Action>
void forEachEntry(const fs::path& folder, const Action& action) {
    std::error_code error;
    listFolder(
        folder, [&](NativeView name, fs::file_type) { action(folder / name); }, error);
}

// True when it is gone.
bool removeEntry(const fs::path& path) {
    std::error_code error;
    fs::remove(path, error);
    if (!error) return true;
#ifdef _WIN32
    // A read-only file cannot be removed there.
    makeWritable(path);
    fs::remove(path, error);
#endif
    return !error;
}

// Moves `folder` to the top, so that no path grows however deep the tree is.
void moveUp(const fs::path& folder, const fs::path& top, std::uint64_t& names) {
    makeWritable(folder);
    std::error_code error;
    do {
        fs::rename(folder, top / ("~" + std::to_string(names++)), error);
        // A name that is taken is passed over; an empty folder of that name is replaced.
    } while (error == std::errc::directory_not_empty || error == std::errc::file_exists ||
             error == std::errc::not_a_directory);
}

void removeAll(const fs::path& top) {
    makeWritable(top);
    std::uint64_t names = 0;
    for (bool progress = true; progress;) {
        progress = false;
        forEachEntry(top, [&](const fs::path& entry) {
            if (isRealDirectory(entry)) {
                makeWritable(entry);
                forEachEntry(entry, [&](const fs::path& inner) {
                    if (isRealDirectory(inner)) {
                        moveUp(inner, top, names);
                    } else {
                        removeEntry(inner);
                    }
                });
            }
            progress = removeEntry(entry) || progress;
        });
    }
    removeEntry(top);
}

}  // namespace

void removeTree(const fs::path& folder) noexcept {
    try {
        if (!removeEntry(folder)) removeAll(folder);
    } catch (const std::exception&) {
        // Out of memory: nothing is left to try.
    }
}

}  // namespace tindrel
