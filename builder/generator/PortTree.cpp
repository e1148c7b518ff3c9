#include "generator/PortTree.hpp"

#include <sstream>
#include <stdexcept>
#include <string_view>

#include "analysis/ParityAudit.hpp"
#include "generator/AssetCopy.hpp"
#include "generator/CharacterTables.hpp"
#include "generator/FixedTexts.hpp"
#include "generator/PortFiles.hpp"
#include "generator/RepairPackage.hpp"
#include "generator/RuntimeEmission.hpp"
#include "generator/StageTables.hpp"
#include "platform/FileStatus.hpp"
#include "platform/OutputFile.hpp"
#include "reader/DataPaths.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

void writeLogicalSize(OutputFile& out, const ProjectAnalysis& analysis) {
    out << "logical_width=" << analysis.logicalWidth << '\n'
        << "logical_height=" << analysis.logicalHeight << '\n';
}

void writeConfiguration(const ProjectAnalysis& analysis, const fs::path& config) {
    OutputFile port(config / "port.ini");
    port << text::kPortIdentity;
    writeLogicalSize(port, analysis);
    port.close();
    OutputFile video(config / "openbor-video.ini");
    writeLogicalSize(video, analysis);
    video.close();
}

void writeCompatibility(const ProjectScan& project, const ProjectAnalysis& analysis,
                        const fs::path& report) {
    const auto presence = [](bool present) { return present ? "OK\n" : "MISSING\n"; };
    OutputFile out(report);
    out << "Tindrel Builder - Compatibility Report\n"
        << "Files: " << project.fileCount << '\n'
        << "Images: " << project.imageCount << '\n'
        << "Audio: " << project.audioCount << '\n'
        << "Text/script-like: " << project.textCount << '\n'
        << "models.txt: " << presence(project.hasModels)
        << "levels.txt: " << presence(project.hasLevels)
        << "Scanned text files: " << analysis.textFiles << '\n'
        << "Recognized commands: " << analysis.recognized << '\n'
        << "Unknown commands: " << analysis.unknown << '\n'
        << "Issues: " << analysis.issues.size() << "\n\n";
    for (const Issue& issue : analysis.issues) {
        out << '[' << levelName(issue.level) << "] " << issue.file->display << ':' << issue.line
            << " command=" << issue.command << " - " << issue.message << '\n';
    }
    for (const std::string& warning : project.warnings) out << "[WARNING] " << warning << '\n';
    out.close();
}

void writeCommandUsage(const ProjectAnalysis& analysis, const fs::path& report) {
    OutputFile out(report);
    out << "command,count\n";
    for (const auto& [command, count] : analysis.commandCounts) {
        out << command << ',' << count << '\n';
    }
    out.close();
}

void writeSpecialFiles(const ProjectScan& project, const fs::path& report) {
    const bool present[] = {project.hasMenu,   project.hasVideo, project.hasLifebar,
                            project.hasScript, project.hasTitle, project.hasSelect,
                            project.hasLoading};
    static_assert(std::size(present) == std::size(text::kSpecialFiles));
    OutputFile out(report);
    out << text::kSpecialFilesTitle;
    for (std::size_t i = 0; i < std::size(present); ++i) {
        const text::SpecialFile& file = text::kSpecialFiles[i];
        out << file.label << (present[i] ? file.present : file.absent) << '\n';
    }
    out.close();
}

std::string projectPath(const ProjectScan& project, const TreeEntry& entry) {
    return displayPath(entry.path().lexically_relative(project.root));
}

// How the port's runtime plays a file of that extension; empty for what is no sound.
std::string_view audioBackend(std::string_view extension) {
    if (extension == ".bor" || extension == ".wav") return "NATIVE";
    if (extension == ".ogg" || extension == ".mp3" || extension == ".flac") {
        return "WINDOWS_MEDIA_FOUNDATION";
    }
    return {};
}

void writeAudioReport(const ProjectScan& project, const fs::path& report) {
    OutputFile out(report);
    out << text::kAudioReportTitle;
    for (const TreeEntry& entry : project.entries) {
        const std::string_view backend = audioBackend(entry.extension());
        if (!entry.regularFile || backend.empty()) continue;
        std::error_code error;
        const std::uintmax_t size = fs::file_size(entry.path(), error);
        if (error) throw fs::filesystem_error("file_size", entry.path(), error);
        out << backend << '\t' << projectPath(project, entry) << '\t' << size << " bytes\n";
    }
    out.close();
}

void writeScriptReport(const ProjectScan& project, const fs::path& report) {
    OutputFile out(report);
    out << text::kScriptVmReport;
    for (const TreeEntry& entry : project.entries) {
        if (!entry.regularFile || !isScriptExtension(entry.extension())) continue;
        out << "VM_CANDIDATE\t" << projectPath(project, entry) << '\n';
    }
    out.close();
}

void writeParity(const fs::path& report) {
    std::ostringstream text;
    printParityAudit(text);
    writeTextFile(report, text.view());
}

}  // namespace

void generatePort(const ProjectScan& project, const ProjectAnalysis& analysis, GameReader& game,
                  const fs::path& outputFolder, PortSettings settings) {
    if (project.hasData && isInsideDataFolder(project.dataDir, outputFolder)) {
        throw std::runtime_error("Output folder must not be inside the source data/ directory.");
    }
    const fs::path config = outputFolder / "config";
    const fs::path reports = outputFolder / "reports";
    for (const fs::path& folder :
         {outputFolder / "assets", outputFolder / "runtime", config, reports}) {
        createDirectories(folder);
    }
    if (project.hasData) copyAssets(project, outputFolder / "assets" / "openbor-data");

    writeConfiguration(analysis, config);
    writeCompatibility(project, analysis, reports / "compatibility.txt");
    writeCommandUsage(analysis, reports / "command-usage.csv");
    writeSpecialFiles(project, reports / "openbor-special-files.txt");
    writeAudioReport(project, reports / "audio-compatibility.txt");
    writeTextFile(reports / "graphics-backend.txt", text::kGraphicsBackendReport);
    writeTextFile(reports / "input-multiplayer.txt", text::kInputReport);
    writeScriptReport(project, reports / "script-vm-compatibility.txt");

    writeGeneratedCharacters(game.models(), outputFolder);
    writeGeneratedStages(game.stages(), outputFolder);
    writeRuntime(outputFolder, game.asWritten(), settings);
    writeParity(reports / "openbor-parity.md");
    writeRepairPackage(project, analysis, outputFolder);
    writeTextFile(outputFolder / "README-PORT.txt", text::kPortReadme);
}

}  // namespace tindrel
