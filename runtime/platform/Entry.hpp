#pragma once

// The program, as the system's own entry function calls it.

namespace port {

// Arguments as of main(): UTF-8 on Windows, the program's name first. Returns the exit code.
int portMain(int argc, char** argv);

}  // namespace port
