#pragma once

// A search path of a test's own, with a `cmake` that only does what the test asks of it.

#include <filesystem>
#include <string>
#include <string_view>

#include "Environment.hpp"
#include "TempFolder.hpp"

namespace tindrel::test {

inline constexpr std::string_view kFakeCmake = R"sh(#!/bin/sh
here="${0%/*}"
echo "$@" >> "$here/log"
case "$1" in
-S)
    if [ -e "$4/CMakeCache.txt" ] || [ -e "$4/old" ]; then echo "stale build" >> "$here/log"; fi
    echo cache > "$4/CMakeCache.txt"
    if [ -e "$here/fail-configure" ]; then exit 7; fi
    if [ -e "$here/fail-ninja" ] && [ "$6" = -G ]; then exit 7; fi
    ;;
--build)
    if [ -e "$here/fail-build" ]; then exit 7; fi
    if [ ! -e "$here/no-executable" ]; then
        echo '#!/bin/sh' > "$2/openbor-port"
        echo 'echo "ran $*" > started; exit 3' >> "$2/openbor-port"
        if [ -e "$here/program" ]; then /bin/cat "$here/program" > "$2/openbor-port"; fi
        /bin/chmod 755 "$2/openbor-port"
        echo MZ > "$2/openbor-port.exe"
    fi
    if [ -e "$here/gone-after-build" ]; then /bin/rm "$0"; fi
    ;;
-DPROGRAM=*)
    if [ -e "$here/fail-libraries" ]; then exit 7; fi
    folder="${2#-DFOLDER=}"
    if [ -x "${1#-DPROGRAM=}" ]; then /bin/mkdir "$folder" && echo elf > "$folder/libone.so.1"; fi
    ;;
-E)
    if [ -e "$here/fail-zip" ]; then exit 7; fi
    echo "in $(pwd)" >> "$here/log"
    echo zip > "$4"
    ;;
esac
)sh";

class FakeTools {
  public:
    FakeTools() : path_("PATH", folder_.path().string()) {
        log("");
        addProgram("cmake", kFakeCmake);
    }

    void addProgram(std::string_view name, std::string_view script) const {
        namespace fs = std::filesystem;
        const fs::path file = folder_.write(name, script);
        fs::permissions(file, fs::perms::owner_exec, fs::perm_options::add);
    }
    void removeProgram(std::string_view name) const {
        std::filesystem::remove(folder_.path() / name);
    }

    // "fail-configure", "fail-ninja", "fail-build", "no-executable", "gone-after-build",
    // "fail-libraries", "fail-zip". What is written as "program" becomes the port that is built.
    void set(std::string_view flag) const { folder_.write(flag, ""); }
    void unset(std::string_view flag) const { removeProgram(flag); }

    // The arguments of every call, one line each.
    [[nodiscard]] std::string log() const { return folder_.read("log"); }
    void log(std::string_view content) const { folder_.write("log", content); }

    void write(std::string_view name, std::string_view content) const {
        folder_.write(name, content);
    }
    [[nodiscard]] std::string read(std::string_view name) const { return folder_.read(name); }

    [[nodiscard]] std::string cmake() const { return (folder_.path() / "cmake").string(); }

  private:
    TempFolder folder_;
    Environment path_;
};

// A port as the build and the package look at it, with what a package leaves behind.
inline void writePort(const TempFolder& folder, const std::string& name) {
    folder.write(name + "/assets/openbor-data/models.txt", "load Hero data/chars/hero.txt\n");
    folder.write(name + "/config/graphics.ini", "[video]\n");
    folder.write(name + "/reports/analysis.json", "{}\n");
    folder.write(name + "/runtime/CMakeLists.txt", "project(port)\n");
    folder.write(name + "/runtime/src/Engine.cpp", "");
    folder.write(name + "/README-PORT.txt", "Read me.\n");
}

}  // namespace tindrel::test
