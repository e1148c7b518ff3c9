#include "driver/CommandTable.hpp"

#include <ostream>
#include <string>

#include "platform/Version.hpp"

namespace tindrel {
namespace {

constexpr CommandInfo kCommands[] = {
    {"scan", "<game>", "say whether it is a game and what it holds"},
    {"analyze", "<game> [folder]", "judge it and write reports, else in <game>/reports"},
    {"audit", "<game>", "judge it, and show what a port does natively"},
    {"convert", "<game> [folder]", "write a port, by default <game>-Native-Port"},
    {"build", "<game> <folder>", "write a port and compile it"},
    {"watch", "<game> <port>", "do so again whenever the game changes, until Ctrl+C"},
    {"repair", "<game> <folder>", "gather all issues and their files in AI-Repair"},
    {"package", "<port>", "compile a port and pack a portable ZIP beside it"},
    {"test", "<port>", "check a port's files and compile it"},
};

constexpr OptionInfo kOptions[] = {
    {"--as-written", "", "", "take every line of the game to the letter"},
    {"--run", "", "watch", "start the port, and again after each build"},
    {"--windows", "", "package", "for Windows, on another system"},
    {"--playtest", "<file>", "test", "show what this report of a bot's play tells, too"},
    {"--help", "", "", "this text"},
    {"--version", "", "", "the version"},
};

void printRow(std::ostream& out, std::string name, std::string_view summary) {
    constexpr std::size_t kNameWidth = 24;
    name.resize(kNameWidth, ' ');
    out << "  " << name << summary << '\n';
}

}  // namespace

std::span<const CommandInfo> commandTable() {
    return kCommands;
}

std::span<const OptionInfo> optionTable() {
    return kOptions;
}

void printHelp(std::ostream& out) {
    printVersion(out);
    out << "Turns a game made for the OpenBOR engine into a native C++ project, tells what\n"
           "will and won't work, and compiles and packs the result.\n"
           "\n"
           "Usage: tindrel-builder <command> <game or port> [folder] [options]\n"
           "       tindrel-builder    asks by dialogs, where the desktop has some\n"
           "\n"
           "Commands:\n";
    for (const CommandInfo& command : kCommands) {
        printRow(out, std::string(command.name).append(1, ' ').append(command.arguments),
                 command.summary);
    }
    out << "\nOptions:\n";
    for (const OptionInfo& option : kOptions) {
        std::string name(option.name);
        if (!option.value.empty()) name.append(1, '=').append(option.value);
        std::string summary(option.command);
        if (!summary.empty()) summary += ": ";
        printRow(out, std::move(name), summary.append(option.summary));
    }
    out << "\n"
           "A game is a folder that holds data/, or a .zip, .rar or .pak of one. A port is\n"
           "what convert or build wrote; its reports/index.html is the place to start.\n"
           "\n"
           "Ends with 0 on success, 1 after the usage, 2 without input, 3 without data/,\n"
           "4 and 5 when refused, 10 when the file system fails, 20 to 24 when compiling\n"
           "does, 30 to 33 when packing does, 40 when a check of test does.\n";
}

void printVersion(std::ostream& out) {
    out << "Tindrel Builder " << kVersion << '\n';
}

}  // namespace tindrel
