#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Process.hpp"

namespace port::platform {
namespace {

std::wstring wide(std::string_view utf8) {
    const int length = static_cast<int>(utf8.size());
    const int needed = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(needed), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, text.data(), needed);
    return text;
}

}  // namespace

std::filesystem::path ownPath() {
    std::vector<wchar_t> buffer(32768);
    const DWORD length =
        GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == 0 || length >= buffer.size()) return {};
    return std::wstring(buffer.data(), length);
}

std::filesystem::path pathFromArgument(const std::string& argument) {
    return wide(argument);
}

bool foldsArguments() {
    return true;
}

void showError(std::string_view title, std::string_view message) {
    MessageBoxW(nullptr, wide(message).c_str(), wide(title).c_str(),
                MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
}

// A program without a console has an output only where a caller leads it somewhere.
void tell(std::string_view title, std::string_view text) {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    if (output != nullptr && GetFileType(output) != FILE_TYPE_UNKNOWN) {
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fflush(stdout);
        return;
    }
    MessageBoxW(nullptr, wide(text).c_str(), wide(title).c_str(), MB_OK | MB_ICONINFORMATION);
}

}  // namespace port::platform
