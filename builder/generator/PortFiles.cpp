#include "generator/PortFiles.hpp"

#include "platform/FileReplace.hpp"
#include "platform/LinkStatus.hpp"
#include "platform/OutputFile.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

void removeEntry(const fs::path& path) {
    std::error_code error;
    if (fs::remove(path, error)) return;
    // Windows keeps a file that is marked read-only, as the copies from a game's CD are.
    if (!error || isLink(path)) return;
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::add, error);
    fs::remove(path, error);
}

// By size and time of change, which a copy takes over.
bool isUnchangedCopy(const fs::path& source, const fs::path& copy) {
    std::error_code noSource, noCopy;
    const bool isSameAge =
        fs::last_write_time(source, noSource) == fs::last_write_time(copy, noCopy);
    if (!isSameAge || noSource || noCopy) return false;
    const bool isSameSize = fs::file_size(source, noSource) == fs::file_size(copy, noCopy);
    return isSameSize && !noSource && !noCopy;
}

}  // namespace

void writeTextFile(const fs::path& path, std::string_view text, LineEnds ends) {
    OutputFile out(path, ends);
    out << text;
    out.close();
}

std::error_code replaceWithCopy(const fs::path& source, const fs::path& target) {
    std::error_code error;
    copyNewFile(source, target, error);
    if (!error) return {};
    std::error_code ignored;
    const fs::file_status before = linkStatus(target, ignored);
    if (!fs::exists(before)) return error;
    if (!fs::is_symlink(before) &&
        (isUnchangedCopy(source, target) || fs::equivalent(source, target, ignored))) {
        return {};
    }
    // Writing into what is there could write through a link, or into the game by a hard link.
    removeEntry(target);
    copyNewFile(source, target, error);
    return error;
}

std::error_code makeFolder(const fs::path& target) {
    std::error_code error;
    const fs::file_status before = linkStatus(target, error);
    if (fs::is_directory(before)) return {};
    if (fs::exists(before)) removeEntry(target);
    fs::create_directory(target, error);
    return error;
}

}  // namespace tindrel
