#include <windows.h>

#include <string>

#include "platform/Process.hpp"
#include "platform/WideText.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr DWORD kPathCharacters = 32768;

}  // namespace

fs::path searchProgram(std::string_view name) {
    std::wstring buffer(kPathCharacters, L'\0');
    const DWORD length =
        SearchPathW(nullptr, widen(name).c_str(), L".exe", kPathCharacters, buffer.data(), nullptr);
    if (length == 0 || length >= kPathCharacters) return {};
    buffer.resize(length);
    return buffer;
}

fs::path builderFolder() {
    std::wstring buffer(kPathCharacters, L'\0');
    const DWORD length = GetModuleFileNameW(nullptr, buffer.data(), kPathCharacters);
    if (length == 0 || length >= kPathCharacters) {
        std::error_code error;
        return fs::current_path(error);
    }
    buffer.resize(length);
    return fs::path(buffer).parent_path();
}

fs::path environmentPath(const char* name) {
    const wchar_t* value = _wgetenv(widen(name).c_str());
    return value == nullptr ? fs::path{} : fs::path(value);
}

unsigned long processId() {
    return GetCurrentProcessId();
}

}  // namespace tindrel
