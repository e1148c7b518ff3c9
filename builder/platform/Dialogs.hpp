#pragma once

// What a run without arguments asks of the desktop. Plain functions, so that a test can answer.

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace tindrel {

enum class DialogAnswer { kYes, kNo, kCancel };
enum class DialogStyle { kInformation, kQuestion, kWarning };

struct FileFilter {
    std::string_view label;
    std::string_view patterns;  // "*.zip;*.rar"
};

// Titles and texts are UTF-8. A picker that is left without a choice gives an empty path.
struct Dialogs {
    std::function<void()> hideConsole;
    std::function<DialogAnswer(std::string_view title, std::string_view text)> askThreeWay;
    std::function<bool(std::string_view title, std::string_view text, DialogStyle style)> askYesNo;
    std::function<void(std::string_view title, std::string_view text)> showError;
    std::function<std::filesystem::path(std::string_view title,
                                        std::span<const FileFilter> filters)>
        pickFile;
    std::function<std::filesystem::path(std::string_view title)> pickFolder;
    // In the desktop's file manager, without waiting for it.
    std::function<void(const std::filesystem::path& folder)> openFolder;

    std::shared_ptr<void> session;  // what the desktop needs for as long as dialogs are shown
};

// Nothing where no dialog can be shown.
[[nodiscard]] std::optional<Dialogs> systemDialogs();

}  // namespace tindrel
