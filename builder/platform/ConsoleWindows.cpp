// windows.h stands first: the other system headers build on it.
#include <windows.h>
//
#include <io.h>
#include <shellapi.h>
#include <stdio.h>

#include "platform/Console.hpp"
#include "platform/WideText.hpp"

namespace tindrel {

Restored showUtf8() {
    const UINT before = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    return Restored([before] {
        if (before != 0) SetConsoleOutputCP(before);
    });
}

// Names are wide here in any locale.
Restored nameFilesInUtf8() {
    return Restored();
}

std::optional<std::vector<std::string>> commandLine(int, char**) {
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr) return std::nullopt;
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) arguments.push_back(narrow(wide[i]));
    LocalFree(wide);
    return arguments;
}

bool errorStreamIsTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

}  // namespace tindrel
