// windows.h stands first: the other system headers build on it.
#include <windows.h>
//
#include <commdlg.h>
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

#include <string>

#include "platform/Dialogs.hpp"
#include "platform/WideText.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr DWORD kPathCharacters = 32768;

int showBox(std::string_view title, std::string_view text, UINT style) {
    return MessageBoxW(nullptr, widen(text).c_str(), widen(title).c_str(), style);
}

void hideConsole() {
    if (const HWND console = GetConsoleWindow(); console != nullptr) ShowWindow(console, SW_HIDE);
}

DialogAnswer askThreeWay(std::string_view title, std::string_view text) {
    switch (showBox(title, text, MB_YESNOCANCEL | MB_ICONINFORMATION)) {
        case IDYES:
            return DialogAnswer::kYes;
        case IDNO:
            return DialogAnswer::kNo;
        default:
            return DialogAnswer::kCancel;
    }
}

bool askYesNo(std::string_view title, std::string_view text, DialogStyle style) {
    UINT icon = MB_ICONINFORMATION;
    if (style == DialogStyle::kQuestion) icon = MB_ICONQUESTION;
    if (style == DialogStyle::kWarning) icon = MB_ICONWARNING;
    return showBox(title, text, MB_YESNO | icon) == IDYES;
}

fs::path pickFile(std::string_view title, std::span<const FileFilter> filters) {
    std::wstring list;
    for (const FileFilter& filter : filters) {
        (list += widen(filter.label)) += L'\0';
        (list += widen(filter.patterns)) += L'\0';
    }
    std::wstring buffer(kPathCharacters, L'\0');
    const std::wstring wideTitle = widen(title);
    OPENFILENAMEW request{};
    request.lStructSize = sizeof request;
    request.lpstrFilter = list.c_str();
    request.nFilterIndex = 1;
    request.lpstrFile = buffer.data();
    request.nMaxFile = kPathCharacters;
    request.lpstrTitle = wideTitle.c_str();
    request.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST;
    return GetOpenFileNameW(&request) != 0 ? fs::path(buffer.c_str()) : fs::path{};
}

fs::path pickFolder(std::string_view title) {
    const std::wstring wideTitle = widen(title);
    BROWSEINFOW request{};
    request.lpszTitle = wideTitle.c_str();
    request.ulFlags = BIF_RETURNONLYFSDIRS | BIF_EDITBOX | BIF_NEWDIALOGSTYLE;
    LPITEMIDLIST const items = SHBrowseForFolderW(&request);
    if (items == nullptr) return {};
    wchar_t buffer[MAX_PATH] = {};
    const bool known = SHGetPathFromIDListW(items, buffer) != 0;
    CoTaskMemFree(items);
    return known ? fs::path(buffer) : fs::path{};
}

void openFolder(const fs::path& folder) {
    ShellExecuteW(nullptr, L"open", folder.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

}  // namespace

std::optional<Dialogs> systemDialogs() {
    Dialogs dialogs;
    dialogs.hideConsole = hideConsole;
    dialogs.askThreeWay = askThreeWay;
    dialogs.askYesNo = askYesNo;
    dialogs.showError = [](std::string_view title, std::string_view text) {
        showBox(title, text, MB_ICONERROR);
    };
    dialogs.pickFile = pickFile;
    dialogs.pickFolder = pickFolder;
    dialogs.openFolder = openFolder;
    if (SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        dialogs.session = std::shared_ptr<void>(nullptr, [](void*) { CoUninitialize(); });
    }
    return dialogs;
}

}  // namespace tindrel
