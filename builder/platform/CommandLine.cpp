#include "platform/CommandLine.hpp"

namespace tindrel {

std::string quoteCommandLine(const std::vector<std::string>& command) {
    std::string line;
    for (const std::string& argument : command) {
        if (!line.empty()) line += ' ';
        line += '"';
        std::size_t backslashes = 0;
        for (const char c : argument) {
            // Backslashes mean themselves, except in front of a quote.
            if (c == '"') line.append(backslashes + 1, '\\');
            backslashes = c == '\\' ? backslashes + 1 : 0;
            line += c;
        }
        line.append(backslashes, '\\');
        line += '"';
    }
    return line;
}

}  // namespace tindrel
