#include <windows.h>

#include <cstdio>
#include <iostream>

#include "platform/CommandLine.hpp"
#include "platform/Process.hpp"
#include "platform/WideText.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

constexpr DWORD kPathCharacters = 32768;

}  // namespace

int runCommand(const std::vector<std::string>& command) {
    if (command.empty()) return -1;
    // What we have written so far stands before what the child writes.
    std::cout.flush();
    std::fflush(stdout);

    std::wstring line = widen(quoteCommandLine(command));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                       &process) == 0) {
        return -1;
    }
    CloseHandle(process.hThread);
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 1;
    if (GetExitCodeProcess(process.hProcess, &code) == 0) code = 1;
    CloseHandle(process.hProcess);
    return static_cast<int>(code);
}

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
