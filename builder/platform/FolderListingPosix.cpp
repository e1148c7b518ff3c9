#include <dirent.h>

#include <cerrno>
#include <memory>

#include "platform/FolderListing.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

fs::file_type typeOf(const dirent& entry) {
    switch (entry.d_type) {
        case DT_REG:
            return fs::file_type::regular;
        case DT_DIR:
            return fs::file_type::directory;
        case DT_LNK:
            return fs::file_type::symlink;
        case DT_UNKNOWN:
            return fs::file_type::none;
        default:
            return fs::file_type::unknown;
    }
}

}  // namespace

void listFolder(const fs::path& folder,
                const std::function<void(NativeView name, fs::file_type type)>& visit,
                std::error_code& error) {
    error.clear();
    const std::unique_ptr<DIR, CloseFolder> listing(opendir(folder.c_str()));
    if (listing) errno = 0;
    while (const dirent* const entry = listing ? readdir(listing.get()) : nullptr) {
        const NativeView name = entry->d_name;
        if (name != "." && name != "..") visit(name, typeOf(*entry));
        errno = 0;
    }
    if (errno != 0) error.assign(errno, std::generic_category());
}

}  // namespace tindrel
