#include <windows.h>

#include "platform/FileReplace.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

std::error_code lastError() {
    return {static_cast<int>(GetLastError()), std::system_category()};
}

}  // namespace

// Not every standard library tells a file from its copy here, and then refuses to overwrite.
void copyFileOver(const fs::path& from, const fs::path& to, std::error_code& error) {
    error.clear();
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
    } else if (((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? RemoveDirectoryW(path.c_str())
                                                             : DeleteFileW(path.c_str())) == 0) {
        error = lastError();
    }
}

}  // namespace tindrel
