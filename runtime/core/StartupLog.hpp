#pragma once

#include <filesystem>
#include <fstream>
#include <string_view>

namespace port {

// Adds a line to the log of a port's start. A log that cannot be written is not missed.
inline void appendStartupLog(const std::filesystem::path& logPath, std::string_view line) {
    std::ofstream log(logPath, std::ios::app);
    log << line << std::endl;
}

}  // namespace port
