#include <unistd.h>

#include "platform/Console.hpp"

namespace tindrel {

ConsoleEncoding::ConsoleEncoding() = default;
ConsoleEncoding::~ConsoleEncoding() = default;

std::optional<std::vector<std::string>> commandLine(int count, char** arguments) {
    return std::vector<std::string>(arguments, arguments + count);
}

bool errorStreamIsTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

}  // namespace tindrel
