#include <windows.h>

#include "platform/FileReplace.hpp"
#include "platform/LinkStatus.hpp"
#include "platform/RemoveTree.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

std::error_code lastError() {
    return {static_cast<int>(GetLastError()), std::system_category()};
}

}  // namespace

// Not every standard library tells a file from its copy here, and then refuses to overwrite. The
// system refuses for a file that is marked read-only, as files from a disc are.
void copyFileOver(const fs::path& from, const fs::path& to, std::error_code& error) {
    error.clear();
    const DWORD attributes = GetFileAttributesW(to.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesW(to.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
    if (CopyFileW(from.c_str(), to.c_str(), FALSE) == 0) error = lastError();
}

void copyNewFile(const fs::path& from, const fs::path& to, std::error_code& error) {
    error.clear();
    if (CopyFileW(from.c_str(), to.c_str(), TRUE) == 0) error = lastError();
}

// The standard's remove_all() would follow a junction and stop at a read-only file.
void removeAll(const fs::path& path, std::error_code& error) {
    if (!isLink(path)) removeTree(path);
    // What a link is itself, or the reason why something is left.
    fs::remove(path, error);
}

}  // namespace tindrel
