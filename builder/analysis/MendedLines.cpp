#include "analysis/MendedLines.hpp"

#include <array>
#include <system_error>

#include "analysis/HtmlText.hpp"
#include "platform/OutputFile.hpp"

namespace tindrel {

std::uint64_t countMendedLines(const GameReader& game) {
    std::uint64_t count = 0;
    for (const auto& [file, lines] : game.mendedLines()) {
        std::uint64_t last = 0;
        for (const MendedLine& line : lines) {
            if (line.line != last) ++count;
            last = line.line;
        }
    }
    return count;
}

void writeMendedLines(const GameReader& game, const std::filesystem::path& file) {
    if (game.mendedLines().empty()) {
        std::error_code ignored;
        std::filesystem::remove(file, ignored);
        return;
    }
    std::array<std::uint64_t, kMendCount> counts{};
    for (const auto& [name, lines] : game.mendedLines()) {
        for (const MendedLine& line : lines) ++counts[static_cast<std::size_t>(line.mend)];
    }
    OutputFile out(file);
    out << "MENDED LINES\n"
        << counted(countMendedLines(game), "line is", "lines are")
        << " read as plainly meant. With --as-written every line is taken to the letter.\n\n";
    for (const MendRow& row : mends()) {
        const std::uint64_t count = counts[static_cast<std::size_t>(row.mend)];
        if (count == 0) continue;
        out << row.name << " x" << count << "\n    written: " << row.written
            << "\n    read as: " << row.readAs << "\n    else: " << row.why << '\n';
    }
    for (const auto& [name, lines] : game.mendedLines()) {
        out << '\n';
        for (const MendedLine& line : lines) {
            out << name << ':' << line.line << ' ' << rowOf(line.mend).name << '\n';
        }
    }
    out.close();
}

}  // namespace tindrel
