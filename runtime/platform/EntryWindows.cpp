#include <windows.h>

#include <shellapi.h>

#include <string>
#include <vector>

#include "Entry.hpp"

namespace {

std::string narrow(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return {};
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
    utf8.pop_back();  // the terminator
    return utf8;
}

}  // namespace

// No console stands behind the program, so the arguments come from the command line as a whole.
int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    std::vector<std::string> arguments;
    int count = 0;
    if (wchar_t** wideArguments = CommandLineToArgvW(GetCommandLineW(), &count)) {
        for (int i = 0; i < count; ++i) arguments.push_back(narrow(wideArguments[i]));
        LocalFree(wideArguments);
    }
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    return port::portMain(static_cast<int>(arguments.size()), argv.data());
}
