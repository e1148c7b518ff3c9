#include "generator/AssetCopy.hpp"

#include <system_error>

#include "generator/PortFiles.hpp"
#include "platform/FileStatus.hpp"
#include "platform/Progress.hpp"

namespace tindrel {
namespace fs = std::filesystem;

void copyAssets(const ProjectScan& project, const fs::path& target) {
    createDirectories(target);
    // Both with a separator at the end: an entry stands below the one, its copy below the other.
    const NativePath folder = (target / "").native();
    const std::size_t prefix = (project.dataDir / "").native().size();
    Progress progress("Copying", project.entries.size());
    for (const TreeEntry& entry : project.entries) {
        progress.advance();
        if (entry.symlink || (!entry.directory && !entry.regularFile)) continue;
        const fs::path copy = folder + entry.native.substr(prefix);
        // The scan lists a folder ahead of what it holds, so that a file's folder is there by now.
        const std::error_code error =
            entry.directory ? makeFolder(copy) : replaceWithCopy(entry.path(), copy);
        if (isDiskFailure(error)) {
            throw fs::filesystem_error(entry.directory ? "create_directories" : "copy_file",
                                       entry.path(), copy, error);
        }
    }
}

}  // namespace tindrel
