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
        if (asWritten && file.path == kSettings) {
            writeTextFile(path, std::string(file.content).append(kAsWrittenSection));
        } else {
            writeTextFile(path, file.content);
        }
        if (file.path.ends_with(".sh")) {
            std::error_code ignored;
            fs::permissions(path,
                            fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
                            fs::perm_options::add, ignored);
        }
    }
}

}  // namespace tindrel
