#include "generator/PortFiles.hpp"

#include "platform/OutputFile.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

void removeEntry(const fs::path& path) {
    std::error_code error;
    if (fs::remove(path, error)) return;
    // Windows keeps a file that is marked read-only, as the copies from a game's CD are.
    if (!error || fs::is_symlink(path, error)) return;
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::add, error);
    fs::remove(path, error);
}

}  // namespace

void writeTextFile(const fs::path& path, std::string_view text, LineEnds ends) {
    OutputFile out(path, ends);
    out << text;
    out.close();
}

std::error_code replaceWithCopy(const fs::path& source, const fs::path& target) {
    std::error_code error;
    const fs::file_status before = fs::symlink_status(target, error);
    if (fs::exists(before)) {
        if (!fs::is_symlink(before) && fs::equivalent(source, target, error)) return {};
        // Writing into what is there could write through a link, or into the game by a hard link.
        removeEntry(target);
    }
    fs::copy_file(source, target, error);
    if (error) removeEntry(target);
    return error;
}

std::error_code makeFolder(const fs::path& target) {
    std::error_code error;
    const fs::file_status before = fs::symlink_status(target, error);
    if (fs::is_directory(before)) return {};
    if (fs::exists(before)) removeEntry(target);
    fs::create_directory(target, error);
    return error;
}

}  // namespace tindrel
