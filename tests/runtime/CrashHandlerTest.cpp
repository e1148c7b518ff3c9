#include "CrashHandler.hpp"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "TempFolder.hpp"

namespace port {
namespace {

using testing::KilledBySignal;
using tindrel::test::TempFolder;

struct Line {
    int signal = 0;
    unsigned long long address = 0, fault = 0, offset = 0;
    std::string module;
};

// The fields of one line without its end; no signal for a line of another shape.
Line parse(const std::string& text) {
    Line line;
    int module = 0;
    const int parts =
        std::sscanf(text.c_str(),
                    "UNHANDLED SIGNAL code=%d address=0x%llx fault=0x%llx offset=0x%llx module=%n",
                    &line.signal, &line.address, &line.fault, &line.offset, &module);
    if (parts != 4 || module == 0) return {};
    line.module = text.substr(static_cast<std::size_t>(module));
    return line;
}

struct CrashHandler : testing::Test {
    TempFolder folder;

    void install() { platform::installCrashHandler(folder.path() / "runtime-crash.log"); }

    std::vector<std::string> log() {
        std::vector<std::string> lines;
        std::string rest = folder.read("runtime-crash.log");
        for (std::size_t end; (end = rest.find("\r\n")) != rest.npos; rest.erase(0, end + 2)) {
            lines.push_back(rest.substr(0, end));
        }
        EXPECT_EQ(rest, "") << "a line without its end";
        return lines;
    }
};

TEST_F(CrashHandler, LeavesALineAndDiesOfTheSignal) {
    folder.write("runtime-crash.log", "an earlier fall\r\n");
    std::size_t lines = 1;
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
        EXPECT_EXIT(
            {
                install();
                raise(signal);
            },
            KilledBySignal(signal), "^$");
        ASSERT_EQ(log().size(), ++lines);
        EXPECT_EQ(parse(log().back()).signal, signal) << log().back();
    }
    EXPECT_EQ(log().front(), "an earlier fall");
}

TEST_F(CrashHandler, TellsWhereTheProgramStoodAndWhatItTouched) {
    void* const forbidden = mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(forbidden, MAP_FAILED);
    EXPECT_EXIT(
        {
            install();
            *static_cast<volatile int*>(forbidden) = 1;
        },
        KilledBySignal(SIGSEGV), "");
    ASSERT_EQ(log().size(), 1U);
    const Line line = parse(log().front());
    EXPECT_EQ(line.fault, reinterpret_cast<std::uintptr_t>(forbidden)) << log().front();
#if defined(__linux__) && (defined(__x86_64__) || defined(__aarch64__))
    EXPECT_GT(line.offset, 0U);
    EXPECT_GT(line.address, line.offset);
    EXPECT_EQ(line.module, std::filesystem::read_symlink("/proc/self/exe").string());
#endif
    munmap(forbidden, 4096);
}

int descend(int depth) {
    volatile char block[4096] = {};
    block[static_cast<std::size_t>(depth) % sizeof(block)] = 1;
    return depth < 0 ? block[0] : descend(depth + 1) + block[1];
}

TEST_F(CrashHandler, SurvivesAStackThatIsUsedUp) {
    EXPECT_EXIT(
        {
            install();
            descend(0);
        },
        KilledBySignal(SIGSEGV), "");
    ASSERT_EQ(log().size(), 1U);
    EXPECT_EQ(parse(log().front()).signal, SIGSEGV) << log().front();
}

}  // namespace
}  // namespace port
