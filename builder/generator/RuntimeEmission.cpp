#include "generator/RuntimeEmission.hpp"

#include <algorithm>
#include <set>
#include <string>
#include <system_error>

#include "generator/PortFiles.hpp"
#include "platform/FileStatus.hpp"

namespace tindrel {
namespace fs = std::filesystem;

namespace {

constexpr std::string_view kSettings = "config/graphics.ini";
constexpr std::string_view kAsWrittenSection = "\n[reading]\nas_written=true\n";

}  // namespace

// Generated at build time beside runtimeFiles().
std::span<const EmbeddedFile> schemaFiles();

std::string_view schemaHeader(std::string_view name) {
    const auto files = schemaFiles();
    const auto found = std::find_if(files.begin(), files.end(),
                                    [&](const EmbeddedFile& file) { return file.path == name; });
    return found == files.end() ? std::string_view{} : found->content;
}

void writeRuntime(const fs::path& outputFolder, bool asWritten) {
    std::set<fs::path> folders = {outputFolder / "runtime" / "src",
                                  outputFolder / "runtime" / "include"};
    for (const EmbeddedFile& file : runtimeFiles()) {
        folders.insert((outputFolder / file.path).parent_path());
    }
    for (const fs::path& folder : folders) createDirectories(folder);
    for (const EmbeddedFile& file : runtimeFiles()) {
        const fs::path path = outputFolder / file.path;
        const bool isScript = file.path.ends_with(".sh");
        // Shells stumble over the line ends of Windows, and a picture has none.
        const bool asGiven = isScript || file.path.ends_with(".ico");
        std::string text(file.content);
        if (asWritten && file.path == kSettings) text += kAsWrittenSection;
        writeTextFile(path, text, asGiven ? LineEnds::kAsGiven : LineEnds::kOfSystem);
        if (isScript) {
            std::error_code ignored;
            fs::permissions(path,
                            fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
                            fs::perm_options::add, ignored);
        }
    }
}

}  // namespace tindrel
