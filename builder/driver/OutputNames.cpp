#include "driver/OutputNames.hpp"

#include <system_error>

#include "platform/FileStatus.hpp"
#include "platform/LinkStatus.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

// The game's own folder, or where that is unpacked and will be removed, the folder it came in.
const fs::path& lastingFolder(const PreparedInput& prepared) {
    return prepared.ownsTempDir ? prepared.originalPath : prepared.gameRoot;
}

fs::path besideFile(const fs::path& file, const char* suffix) {
    return SelectionName{file.parent_path(), file.stem()}.beside(suffix);
}

}  // namespace

fs::path defaultReportsFolder(const fs::path& input, const PreparedInput& prepared) {
    if (isFile(input)) return besideFile(input, kReportsSuffix);
    return lastingFolder(prepared) / "reports";
}

fs::path defaultPortFolder(const fs::path& input, const PreparedInput& prepared) {
    if (isFile(input)) return besideFile(input, kPortSuffix);
    const fs::path& game = lastingFolder(prepared);
    return SelectionName{game.parent_path(), game.filename()}.beside(kPortSuffix);
}

fs::path SelectionName::beside(const char* suffix) const {
    fs::path result = folder / name;
    result += suffix;
    return result;
}

SelectionName nameSelection(const fs::path& selection) {
    fs::path path = selection;
    if (path.filename().empty()) path = path.parent_path();
    const bool file = isFile(path) && !isLink(path);
    return {path.parent_path(), file ? path.stem() : path.filename()};
}

}  // namespace tindrel
