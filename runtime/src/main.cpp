#include "Startup.hpp"
#include "platform/Entry.hpp"

int port::portMain(int argc, char** argv) {
    return runPort(argc, argv);
}
