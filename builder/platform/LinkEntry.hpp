#pragma once

// Windows alone: what a listing tells of links.

#include <windows.h>

namespace tindrel {

// Of the reparse points only these lead elsewhere; folders that a cloud keeps, for one, are
// folders.
inline bool isLinkEntry(const WIN32_FIND_DATAW& found) {
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK ||
            found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

}  // namespace tindrel
