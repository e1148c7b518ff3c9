#include "platform/FileStatus.hpp"

#include <cerrno>
#include <string>

#include "platform/LinkStatus.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

fs::file_type typeOf(const fs::path& path, const char* operation, bool followLinks) {
    // A NUL would cut the name short and ask about another file.
    if (path.native().find(fs::path::value_type{}) != fs::path::string_type::npos) {
        return fs::file_type::not_found;
    }
    std::error_code error;
    const fs::file_status status = followLinks ? fs::status(path, error) : linkStatus(path, error);
    if (status.type() == fs::file_type::not_found || (error && isAbsence(error))) {
        return fs::file_type::not_found;
    }
    if (error) throw fs::filesystem_error(operation, path, error);
    return status.type();
}

}  // namespace

bool isAbsence(const std::error_code& error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
           error == std::errc::filename_too_long || error == std::errc::invalid_argument ||
           error == std::errc::too_many_symbolic_link_levels;
}

bool exists(const fs::path& path) {
    return typeOf(path, "exists", true) != fs::file_type::not_found;
}

bool isDirectory(const fs::path& path) {
    return typeOf(path, "status", false) == fs::file_type::directory;
}

bool isFile(const fs::path& path) {
    const fs::file_type type = typeOf(path, "status", true);
    return type != fs::file_type::not_found && type != fs::file_type::directory;
}

void createDirectories(const fs::path& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error) throw fs::filesystem_error("create_directories", path, error);
}

fs::path absolute(const fs::path& path) {
    std::error_code error;
    fs::path result = fs::absolute(path, error);
    if (error) throw fs::filesystem_error("absolute", path, error);
    return result;
}

fs::path weaklyCanonical(const fs::path& path) {
    std::error_code error;
    fs::path result = fs::weakly_canonical(path, error);
    if (error) throw fs::filesystem_error("weakly_canonical", path, error);
    return result;
}

fs::path canonicalOrAbsolute(const fs::path& path) {
    std::error_code error;
    fs::path result = fs::weakly_canonical(path, error);
    if (!error) return result;
    result = fs::absolute(path, error);
    return (error ? path : result).lexically_normal();
}

bool isDiskFailure(const std::error_code& error) {
    if (error == std::errc::no_space_on_device || error == std::errc::read_only_file_system ||
        error == std::errc::io_error || error == std::errc::file_too_large) {
        return true;
    }
#ifdef EDQUOT
    if (error.category() == std::generic_category() || error.category() == std::system_category()) {
        return error.value() == EDQUOT;
    }
#endif
    return false;
}

}  // namespace tindrel
