#include "Entry.hpp"

int main(int argc, char** argv) {
    return port::portMain(argc, argv);
}
