#pragma once

// The two streams that a port talks to: what it does, and what went wrong.

#include <iostream>

namespace port {

// One line of what the port does, to the standard output, at once so that a crash loses none.
// Values print in the stream's default form.
template <class... Values>
void logLine(const Values&... values) {
    (std::cout << ... << values) << std::endl;
}

// One line of what went wrong, to the error stream; the game goes on.
template <class... Values>
void warnLine(const Values&... values) {
    (std::cerr << ... << values) << '\n';
}

}  // namespace port
