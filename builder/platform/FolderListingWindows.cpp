#include "platform/FolderListing.hpp"

#include <memory>

#include "platform/LinkEntry.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

struct SearchCloser {
    using pointer = HANDLE;
    void operator()(HANDLE search) const { FindClose(search); }
};

fs::file_type typeOf(const WIN32_FIND_DATAW& entry) {
    if (isLinkEntry(entry)) return fs::file_type::symlink;
    const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return isFolder ? fs::file_type::directory : fs::file_type::regular;
}

}  // namespace

// Not every standard library lists a folder whose path is longer than 260 letters.
void listFolder(const fs::path& folder,
                const std::function<void(NativeView name, fs::file_type type)>& visit,
                std::error_code& error) {
    error.clear();
    WIN32_FIND_DATAW entry;
    const HANDLE first =
        FindFirstFileExW((folder / L"*").c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch,
                         nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (first == INVALID_HANDLE_VALUE) {
        const DWORD failure = GetLastError();
        // The root of an empty disk, which has not even the entry of itself.
        if (failure == ERROR_FILE_NOT_FOUND) return;
        error.assign(static_cast<int>(failure), std::system_category());
        return;
    }
    const std::unique_ptr<HANDLE, SearchCloser> search(first);
    do {
        const NativeView name = entry.cFileName;
        if (name != L"." && name != L"..") visit(name, typeOf(entry));
    } while (FindNextFileW(first, &entry) != 0);
    if (const DWORD end = GetLastError(); end != ERROR_NO_MORE_FILES) {
        error.assign(static_cast<int>(end), std::system_category());
    }
}

}  // namespace tindrel
