#include <windows.h>

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

void tell(std::string_view title, std::string_view text) {
    MessageBoxW(nullptr, wide(text).c_str(), wide(title).c_str(), MB_OK | MB_ICONINFORMATION);
}

}  // namespace port::platform
