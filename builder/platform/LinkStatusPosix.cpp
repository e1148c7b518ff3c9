#include "platform/LinkStatus.hpp"

namespace tindrel {
namespace fs = std::filesystem;

bool isLink(const fs::path& path) {
    std::error_code unknown;
    return fs::is_symlink(path, unknown);
}

fs::file_status linkStatus(const fs::path& path, std::error_code& error) {
    return fs::symlink_status(path, error);
}

}  // namespace tindrel
