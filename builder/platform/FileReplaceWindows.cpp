#include <windows.h>

#include "platform/FileReplace.hpp"
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

// Nor does every one know a junction, and then removes what it points at.
void removeAll(const fs::path& path, std::error_code& error) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    const bool isLink =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    error.clear();
    if (!isLink) {
        fs::remove_all(path, error);
        if (!error) return;
        // One reason is a file that is marked read-only.
        removeTree(path);
        if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) error.clear();
    } else if (((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? RemoveDirectoryW(path.c_str())
                                                             : DeleteFileW(path.c_str())) == 0) {
        error = lastError();
    }
}

}  // namespace tindrel
