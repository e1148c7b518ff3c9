#pragma once

// A folder's entries by name and type. Unlike the standard iterator it makes no path of each, which
// for the thousands of files of a game costs more than the listing itself.

#include <filesystem>
#include <functional>
#include <string_view>
#include <system_error>

namespace tindrel {

using NativeView = std::basic_string_view<std::filesystem::path::value_type>;

// Visits everything in `folder` but "." and "..", in the file system's order. Of a link the type is
// that of the link; it is none where the listing does not tell.
void listFolder(const std::filesystem::path& folder,
                const std::function<void(NativeView name, std::filesystem::file_type type)>& visit,
                std::error_code& error);

}  // namespace tindrel
