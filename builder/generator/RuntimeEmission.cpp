#include "generator/RuntimeEmission.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>
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

std::string settingsText(const fs::path& path, std::string_view carried, bool asWritten,
                         PortSettings settings) {
    std::string text;
    if (settings == PortSettings::kKept) {
        std::ifstream in(path);
        text.assign(std::istreambuf_iterator<char>(in), {});
        const std::size_t section = text.find(kAsWrittenSection);
        if (section != text.npos) text.erase(section, kAsWrittenSection.size());
    }
    if (text.empty()) text = carried;
    if (asWritten) text += kAsWrittenSection;
    return text;
}

}  // namespace

// Generated at build time beside runtimeFiles().
std::span<const EmbeddedFile> schemaFiles();

std::string_view schemaHeader(std::string_view name) {
    const auto files = schemaFiles();
    const auto found = std::find_if(files.begin(), files.end(),
                                    [&](const EmbeddedFile& file) { return file.path == name; });
    return found == files.end() ? std::string_view{} : found->content;
}

void writeRuntime(const fs::path& outputFolder, bool asWritten, PortSettings settings) {
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
        if (file.path == kSettings) {
            writeTextFile(path, settingsText(path, file.content, asWritten, settings));
        } else {
            writeTextFile(path, file.content, asGiven ? LineEnds::kAsGiven : LineEnds::kOfSystem);
        }
        if (isScript) {
            std::error_code ignored;
            fs::permissions(path,
                            fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
                            fs::perm_options::add, ignored);
        }
    }
}

}  // namespace tindrel
