#pragma once

// The two text streams of a run, and what a system's console needs.

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace tindrel {

// Results go to `out`; lines that begin "Erro" and "Falha" go to `err`.
struct Console {
    std::ostream& out;
    std::ostream& err;
};

// Lets the console show UTF-8 for as long as this lives.
class ConsoleEncoding {
  public:
    ConsoleEncoding();
    ConsoleEncoding(const ConsoleEncoding&) = delete;
    ConsoleEncoding& operator=(const ConsoleEncoding&) = delete;
    ~ConsoleEncoding();

  private:
    unsigned int before_ = 0;
};

// Lets child processes read file names as UTF-8 for as long as this lives, whatever the locale.
class Utf8Children {
  public:
    Utf8Children();
    Utf8Children(const Utf8Children&) = delete;
    Utf8Children& operator=(const Utf8Children&) = delete;
    ~Utf8Children();

  private:
    bool changed_ = false;
    std::optional<std::string> before_;
};

// The command line in UTF-8, the program's name first; nothing when the system cannot split it.
[[nodiscard]] std::optional<std::vector<std::string>> commandLine(int count, char** arguments);

// True when someone watches the error stream.
[[nodiscard]] bool errorStreamIsTerminal();

}  // namespace tindrel
