#include "platform/LinkStatus.hpp"

#include "platform/LinkEntry.hpp"

namespace tindrel {
namespace fs = std::filesystem;

bool isLink(const fs::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return false;
    }
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return false;
    FindClose(search);
    return isLinkEntry(found);
}

fs::file_status linkStatus(const fs::path& path, std::error_code& error) {
    if (!isLink(path)) return fs::symlink_status(path, error);
    error.clear();
    return fs::file_status(fs::file_type::symlink);
}

}  // namespace tindrel
