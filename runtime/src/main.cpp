#include "Entry.hpp"
#include "Startup.hpp"

int port::portMain(int argc, char** argv) {
    return runPort(argc, argv);
}
