#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <utility>
#include <vector>

#include "platform/Dialogs.hpp"
#include "platform/Process.hpp"
#include "platform/ProcessPosix.hpp"

// The desktop's own dialog programs ask; their exit code or their output is the answer.

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using Command = std::vector<std::string>;

constexpr std::string_view kYes = "SIM";
constexpr std::string_view kNo = "NAO";
constexpr std::string_view kCancel = "CANCELAR";

// "--name=value", so that no value can be taken for an option.
std::string option(std::string_view name, std::string_view value) {
    return (std::string("--").append(name) += '=').append(value);
}

int run(const Command& command) {
    int code = -1;
    static_cast<void>(runCommandOutput(command, code));
    return code;
}

std::string firstLine(std::string text) {
    while (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

fs::path pick(const Command& command) {
    int code = -1;
    const std::string answer = firstLine(runCommandOutput(command, code));
    return code == 0 ? fs::path(answer) : fs::path{};
}

// "*.zip *.ZIP": the pickers here tell cases apart.
std::string bothCases(std::string_view patterns) {
    std::string result;
    while (!patterns.empty()) {
        const std::size_t end = std::min(patterns.find(';'), patterns.size());
        const std::string pattern(patterns.substr(0, end));
        std::string upper = pattern;
        std::transform(upper.begin(), upper.end(), upper.begin(),
                       [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        if (!result.empty()) result += ' ';
        (result += pattern) += ' ';
        result += upper;
        patterns.remove_prefix(std::min(end + 1, patterns.size()));
    }
    return result;
}

// This program takes a backslash for the start of an escape.
std::string zenityText(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '\\') result += c;
        result += c;
    }
    return option("text", result);
}

void useZenity(Dialogs& dialogs) {
    const auto box = [](std::string_view kind, std::string_view title, std::string_view text) {
        return Command{"zenity", std::string("--").append(kind), "--no-markup",
                       option("title", title), zenityText(text)};
    };
    dialogs.askThreeWay = [box](std::string_view title, std::string_view text) {
        Command command = box("question", title, text);
        command.push_back(option("ok-label", kYes));
        command.push_back(option("cancel-label", kCancel));
        command.push_back(option("extra-button", kNo));
        int code = -1;
        const std::string pressed = firstLine(runCommandOutput(command, code));
        if (code == 0) return DialogAnswer::kYes;
        return pressed == kNo ? DialogAnswer::kNo : DialogAnswer::kCancel;
    };
    dialogs.askYesNo = [box](std::string_view title, std::string_view text, DialogStyle) {
        Command command = box("question", title, text);
        command.push_back(option("ok-label", kYes));
        command.push_back(option("cancel-label", kNo));
        return run(command) == 0;
    };
    dialogs.showError = [box](std::string_view title, std::string_view text) {
        run(box("error", title, text));
    };
    dialogs.pickFile = [](std::string_view title, std::span<const FileFilter> filters) {
        Command command = {"zenity", "--file-selection", option("title", title)};
        for (const FileFilter& filter : filters) {
            command.push_back(option(
                "file-filter", std::string(filter.label) + " | " + bothCases(filter.patterns)));
        }
        return pick(command);
    };
    dialogs.pickFolder = [](std::string_view title) {
        return pick({"zenity", "--file-selection", "--directory", option("title", title)});
    };
}

void useKdialog(Dialogs& dialogs) {
    const auto box = [](std::string_view kind, std::string_view title, std::string_view text) {
        return Command{"kdialog", "--title", std::string(title), std::string("--").append(kind),
                       std::string(text)};
    };
    dialogs.askThreeWay = [box](std::string_view title, std::string_view text) {
        Command command = box("yesnocancel", title, text);
        for (const auto& [name, label] :
             {std::pair{"--yes-label", kYes}, std::pair{"--no-label", kNo},
              std::pair{"--cancel-label", kCancel}}) {
            command.insert(command.end(), {name, std::string(label)});
        }
        const int code = run(command);
        if (code == 0) return DialogAnswer::kYes;
        return code == 1 ? DialogAnswer::kNo : DialogAnswer::kCancel;
    };
    dialogs.askYesNo = [box](std::string_view title, std::string_view text, DialogStyle style) {
        return run(box(style == DialogStyle::kWarning ? "warningyesno" : "yesno", title, text)) ==
               0;
    };
    dialogs.showError = [box](std::string_view title, std::string_view text) {
        run(box("error", title, text));
    };
    dialogs.pickFile = [](std::string_view title, std::span<const FileFilter> filters) {
        std::string list;
        for (const FileFilter& filter : filters) {
            if (!list.empty()) list += '\n';
            ((list += bothCases(filter.patterns)) += '|') += filter.label;
        }
        return pick({"kdialog", "--title", std::string(title), "--getopenfilename",
                     environmentPath("HOME").string(), list});
    };
    dialogs.pickFolder = [](std::string_view title) {
        return pick({"kdialog", "--title", std::string(title), "--getexistingdirectory",
                     environmentPath("HOME").string()});
    };
}

struct DialogProgram {
    std::string_view name;
    void (*use)(Dialogs&);
};

constexpr std::array kPrograms = {DialogProgram{"zenity", useZenity},
                                  DialogProgram{"kdialog", useKdialog}};

}  // namespace

std::optional<Dialogs> systemDialogs() {
    if (environmentPath("DISPLAY").empty() && environmentPath("WAYLAND_DISPLAY").empty()) {
        return std::nullopt;
    }
    for (const auto& [name, use] : kPrograms) {
        if (searchProgram(name).empty()) continue;
        Dialogs dialogs;
        dialogs.hideConsole = [] {};
        dialogs.openFolder = [](const fs::path& folder) {
            static_cast<void>(startProcess({"xdg-open", folder.string()}));
        };
        use(dialogs);
        return dialogs;
    }
    return std::nullopt;
}

}  // namespace tindrel
