#pragma once

// What the program can be asked for, once: options are taken by it, the help is made of it, and the
// manual page and the completions of shells are held to it.

#include <iosfwd>
#include <span>
#include <string_view>

namespace tindrel {

struct CommandInfo {
    std::string_view name;
    std::string_view arguments;
    std::string_view summary;
};

struct OptionInfo {
    std::string_view name;
    std::string_view value;    // empty for an option without; otherwise behind a "="
    std::string_view command;  // that it goes with; empty for all
    std::string_view summary;
};

[[nodiscard]] std::span<const CommandInfo> commandTable();
[[nodiscard]] std::span<const OptionInfo> optionTable();

// For a terminal of 80 columns.
void printHelp(std::ostream& out);

void printVersion(std::ostream& out);

}  // namespace tindrel
