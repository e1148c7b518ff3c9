#include "analysis/CompatibilityReports.hpp"

#include <algorithm>

#include "PathEncoding.hpp"
#include "platform/FileStatus.hpp"
#include "platform/OutputFile.hpp"
#include "reader/DataPaths.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using StatusCounts = std::map<CompatStatus, std::uint64_t>;

std::string gameName(const ProjectScan& project) {
    return PathEncoding::utf8(project.root.filename());
}

// Truncated, so that the shares need not add up to 100.
std::uint64_t percent(std::uint64_t count, const ProjectAnalysis& analysis) {
    const std::uint64_t total =
        analysis.supported + analysis.partial + analysis.unsupported + analysis.unknown;
    return static_cast<std::uint64_t>(static_cast<double>(count) * 100.0 /
                                      static_cast<double>(std::max<std::uint64_t>(total, 1)));
}

enum class JsonText { kRawControls, kStrict };

// analysis.json escapes quotes, backslashes and line ends only: other bytes pass, control
// characters included, which strict parsers refuse.
std::string escapeJson(std::string_view text, JsonText form) {
    constexpr std::string_view kHex = "0123456789abcdef";
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\r') continue;
        if (c == '\n') {
            escaped += "\\n";
        } else if (byte < 0x20 && form == JsonText::kStrict) {
            escaped += "\\u00";
            escaped += {kHex[byte >> 4U], kHex[byte & 15U]};
        } else {
            if (c == '"' || c == '\\') escaped += '\\';
            escaped += c;
        }
    }
    return escaped;
}

CompatStatus statusOf(const ProjectAnalysis& analysis, const CommandName& command) {
    const auto found = analysis.commandStatus.find(command);
    return found == analysis.commandStatus.end() ? CompatStatus::kUnknown : found->second;
}

const StatusCounts& statusCountsOf(const ProjectAnalysis& analysis, const CommandName& command) {
    static const StatusCounts kNone;
    const auto found = analysis.commandStatusCounts.find(command);
    return found == analysis.commandStatusCounts.end() ? kNone : found->second;
}

void writeCommandLines(OutputFile& out, const ProjectAnalysis& analysis) {
    for (const auto& [command, count] : analysis.commandCounts) {
        out << "  " << command << " x" << count << " -> "
            << compatStatusName(statusOf(analysis, command));
        const StatusCounts& byStatus = statusCountsOf(analysis, command);
        if (byStatus.size() >= 2) {
            std::string_view separator = " (";
            for (const auto& [status, statusCount] : byStatus) {
                out << separator << compatStatusName(status) << '=' << statusCount;
                separator = ", ";
            }
            out << ')';
        }
        out << '\n';
    }
}

void writeCompatibilityReport(const ProjectScan& project, const ProjectAnalysis& analysis,
                              const fs::path& file) {
    OutputFile out(file);
    out << "OPENBOR CONVERSION REPORT\n\n";
    out << "Game: " << gameName(project) << '\n';
    out << "Source: " << displayPath(project.root) << '\n';
    out << "OpenBOR hint: " << analysis.openBorHint << '\n';
    out << "Logical resolution: " << analysis.logicalWidth << 'x' << analysis.logicalHeight << '\n';
    out << "Models: " << analysis.models << '\n';
    out << "Stages: " << analysis.stages << '\n';
    out << "Animations: " << analysis.animations << '\n';
    out << "Scripts: " << analysis.scripts << '\n';
    out << "Audio files: " << analysis.audioFiles << '\n';
    out << "Text files: " << analysis.textFiles << "\n\n";
    out << "Parser occurrences:\n";
    out << "  SUPPORTED .... " << analysis.supported << " ("
        << percent(analysis.supported, analysis) << "%)\n";
    out << "  PARTIAL ...... " << analysis.partial << " (" << percent(analysis.partial, analysis)
        << "%)\n";
    out << "  UNSUPPORTED .. " << analysis.unsupported << '\n';
    out << "  UNKNOWN ...... " << analysis.unknown << "\n\n";
    out << "Status means parser support AND runtime support. A parsed-but-not-executed command is "
           "PARTIAL.\n\n";
    out << "Command registry:\n";
    writeCommandLines(out, analysis);
    out << "\nIssues (file:line command impact):\n";
    for (const Issue& issue : analysis.issues) {
        out << "  [" << compatStatusName(issue.status) << "] " << issue.file->display << ':'
            << issue.line << ' ' << issue.command;
        if (!issue.message.empty()) out << " - " << issue.message;
        out << '\n';
    }
    out.close();
}

void writeAnimationCommandAudit(const ProjectAnalysis& analysis, const fs::path& file) {
    OutputFile out(file);
    out << "ANIMATION COMMAND AUDIT\n"
           "Per-call diagnostics; no generic suppression of PARTIAL.\n\n";
    for (const AnimationCommandAudit& audit : analysis.animationAudit) {
        out << '[' << compatStatusName(audit.status) << "] " << audit.file->display << ':'
            << audit.line << ' ' << audit.message << '\n';
    }
    out.close();
}

// Tells whether a strict form of the file would differ.
bool writeAnalysisJson(const ProjectScan& project, const ProjectAnalysis& analysis,
                       const fs::path& file, JsonText form) {
    OutputFile out(file);
    bool differs = false;
    const auto escape = [&](std::string_view text) {
        std::string escaped = escapeJson(text, form);
        differs = differs || escaped != escapeJson(text, JsonText::kStrict);
        return escaped;
    };
    out << "{\n";
    out << "  \"game\": \"" << escape(gameName(project)) << "\",\n";
    out << "  \"logicalWidth\": " << analysis.logicalWidth << ",\n";
    out << "  \"logicalHeight\": " << analysis.logicalHeight << ",\n";
    out << "  \"models\": " << analysis.models << ",\n";
    out << "  \"stages\": " << analysis.stages << ",\n";
    out << "  \"animations\": " << analysis.animations << ",\n";
    out << "  \"scripts\": " << analysis.scripts << ",\n";
    out << "  \"audioFiles\": " << analysis.audioFiles << ",\n";
    out << "  \"supported\": " << analysis.supported << ",\n";
    out << "  \"partial\": " << analysis.partial << ",\n";
    out << "  \"unsupported\": " << analysis.unsupported << ",\n";
    out << "  \"unknown\": " << analysis.unknown << ",\n";
    out << "  \"commands\": {\n";
    std::size_t left = analysis.commandCounts.size();
    for (const auto& [command, count] : analysis.commandCounts) {
        out << "    \"" << escape(command) << "\": {\"count\": " << count << ", \"status\": \""
            << compatStatusName(statusOf(analysis, command)) << "\", \"statusCounts\": {";
        std::string_view separator = "\"";
        for (const auto& [status, statusCount] : statusCountsOf(analysis, command)) {
            out << separator << compatStatusName(status) << "\": " << statusCount;
            separator = ", \"";
        }
        out << (--left > 0 ? "}},\n" : "}}\n");
    }
    out << "  }\n}\n";
    out.close();
    return differs;
}

}  // namespace

void writeReports(const ProjectScan& project, const ProjectAnalysis& analysis,
                  const fs::path& folder) {
    createDirectories(folder);
    writeCompatibilityReport(project, analysis, folder / "compatibility-report.txt");
    writeAnimationCommandAudit(analysis, folder / "animation-command-audit.txt");
    if (writeAnalysisJson(project, analysis, folder / "analysis.json", JsonText::kRawControls)) {
        writeAnalysisJson(project, analysis, folder / "analysis-strict.json", JsonText::kStrict);
    }
}

}  // namespace tindrel
