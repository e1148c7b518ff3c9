#include "platform/FileReplace.hpp"

namespace tindrel {
namespace fs = std::filesystem;

void copyFileOver(const fs::path& from, const fs::path& to, std::error_code& error) {
    fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
}

void removeAll(const fs::path& path, std::error_code& error) {
    fs::remove_all(path, error);
}

}  // namespace tindrel
