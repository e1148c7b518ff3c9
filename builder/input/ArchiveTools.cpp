#include "input/ArchiveTools.hpp"

#include <algorithm>
#include <string_view>

#include "platform/FileStatus.hpp"
#include "platform/Process.hpp"
#include "platform/ToolProcess.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

std::string text(const fs::path& path) {
    const std::u8string utf8 = path.u8string();
    return {utf8.begin(), utf8.end()};
}

Command sevenZipCommand(const fs::path& program, const fs::path& archive,
                        const fs::path& destination) {
    return {text(program), "x", "-y", "-o" + text(destination), text(archive)};
}

// A PowerShell literal. The shell takes the four typographic quotes U+2018 to U+201B for single
// quotes as well; left alone they would end the literal and let a file's name run as a command.
std::string powerShellLiteral(const fs::path& path) {
    const std::string bytes = text(path);
    std::string literal = "'";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::string_view mark = std::string_view(bytes).substr(i, 3);
        const bool typographic = mark >= "\xE2\x80\x98" && mark <= "\xE2\x80\x9B";
        if (typographic) literal += mark;
        if (bytes[i] == '\'') literal += '\'';
        literal += bytes[i];
    }
    return literal + '\'';
}

Command powerShell(const fs::path& archive, const fs::path& destination) {
    return {"powershell.exe",
            "-NoProfile",
            "-NonInteractive",
            "-ExecutionPolicy",
            "Bypass",
            "-Command",
            "Expand-Archive -LiteralPath " + powerShellLiteral(archive) + " -DestinationPath " +
                powerShellLiteral(destination) + " -Force"};
}

Command windowsTar(const fs::path& archive, const fs::path& destination) {
    return {"tar.exe", "-xf", text(archive), "-C", text(destination)};
}

Command windowsSevenZip(const fs::path& archive, const fs::path& destination) {
    fs::path program = searchProgram("7z.exe");
    for (const char* const variable : {"ProgramFiles", "ProgramFiles(x86)"}) {
        if (!program.empty()) break;
        const fs::path folder = environmentPath(variable);
        if (folder.empty()) continue;
        const fs::path candidate = folder / "7-Zip" / "7z.exe";
        if (tindrel::exists(candidate)) program = candidate;
    }
    if (program.empty()) return {};
    return sevenZipCommand(program, archive, destination);
}

// unzip reads the archive's name as a pattern: "game[1].zip" would be "game1.zip", another file.
std::string unzipPattern(const fs::path& archive) {
    constexpr std::string_view kWild = "*?[";
    std::string whole = text(archive);
    if (whole.find_first_of(kWild) == std::string::npos) return whole;
    std::string pattern = text(archive.parent_path() / "");
    for (const char c : text(archive.filename())) {
        if (kWild.find(c) != std::string_view::npos) {
            (pattern += '[') += c;
            pattern += ']';
        } else {
            if (c == '\\') pattern += '\\';
            pattern += c;
        }
    }
    return pattern;
}

Command unzip(const fs::path& archive, const fs::path& destination) {
    return {"unzip", "-o", "-q", unzipPattern(archive), "-d", text(destination)};
}

// Any passphrase will do: without one bsdtar asks for it thousands of times.
Command posixTar(const fs::path& archive, const fs::path& destination) {
    return {"bsdtar", "--passphrase", "-", "-xf", text(archive), "-C", text(destination)};
}

Command posixSevenZip(const fs::path& archive, const fs::path& destination) {
    for (const std::string_view name : {"7zz", "7z", "7za"}) {
        const fs::path program = searchProgram(name);
        if (!program.empty()) return sevenZipCommand(program, archive, destination);
    }
    return {};
}

}  // namespace

ArchiveTools windowsArchiveTools() {
    return {powerShell, windowsTar, windowsSevenZip, runTool};
}

ArchiveTools posixArchiveTools() {
    return {unzip, posixTar, posixSevenZip, runTool};
}

ArchiveTools systemArchiveTools() {
#ifdef _WIN32
    return windowsArchiveTools();
#else
    return posixArchiveTools();
#endif
}

}  // namespace tindrel
