#pragma once

// The two text streams of a run, and what a system's console needs.

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tindrel {

// Results go to `out`; lines that begin "Erro" and "Falha" go to `err`.
struct Console {
    std::ostream& out;
    std::ostream& err;
};

// A change that is taken back when this ends.
class Restored {
  public:
    explicit Restored(std::function<void()> restore = {}) : restore_(std::move(restore)) {}
    Restored(const Restored&) = delete;
    Restored& operator=(const Restored&) = delete;
    ~Restored() {
        if (restore_) restore_();
    }

  private:
    std::function<void()> restore_;
};

// Lets the console show UTF-8.
[[nodiscard]] Restored showUtf8();

// Lets child processes read file names as UTF-8, whatever the locale.
[[nodiscard]] Restored nameFilesInUtf8();

// The command line in UTF-8, the program's name first; nothing when the system cannot split it.
[[nodiscard]] std::optional<std::vector<std::string>> commandLine(int count, char** arguments);

// True when someone watches the error stream.
[[nodiscard]] bool errorStreamIsTerminal();

}  // namespace tindrel
