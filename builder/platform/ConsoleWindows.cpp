// windows.h stands first: the other system headers build on it.
#include <windows.h>
//
#include <io.h>
#include <shellapi.h>
#include <stdio.h>

#include "platform/Console.hpp"
#include "platform/WideText.hpp"

namespace tindrel {

ConsoleEncoding::ConsoleEncoding() : before_(GetConsoleOutputCP()) {
    SetConsoleOutputCP(CP_UTF8);
}

ConsoleEncoding::~ConsoleEncoding() {
    if (before_ != 0) SetConsoleOutputCP(before_);
}

// Names are wide here in any locale.
Utf8Children::Utf8Children() = default;
Utf8Children::~Utf8Children() = default;

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
