// make_pak <folder> <file>: packs <folder>/data into a PAK.

#include <cstdio>
#include <exception>
#include <fstream>

#include "PakWriter.hpp"

int main(int count, char** arguments) {
    if (count != 3) {
        std::fputs("Usage: make_pak <folder> <file>\n", stderr);
        return 1;
    }
    try {
        const std::string pak = tindrel::test::pakOfFolder(arguments[1]);
        std::ofstream out(arguments[2], std::ios::binary);
        out.write(pak.data(), static_cast<std::streamsize>(pak.size()));
        out.close();
        if (out.good()) return 0;
        std::fprintf(stderr, "Cannot write %s\n", arguments[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    return 2;
}
