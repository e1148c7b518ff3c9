#include <iostream>

#include "driver/Dispatch.hpp"
#include "platform/Console.hpp"
#include "platform/Dialogs.hpp"
#include "platform/ExitCodes.hpp"
#include "platform/LargePages.hpp"

int main(int argc, char** argv) {
    tindrel::preferLargePages();
    // Thousands of summary lines are written in large pieces; child processes are waited for with
    // the stream flushed.
    std::ios::sync_with_stdio(false);
    const tindrel::Restored console = tindrel::showUtf8();
    const auto arguments = tindrel::commandLine(argc, argv);
    if (!arguments) return tindrel::kNoInput;
    return tindrel::runBuilder(*arguments, {std::cout, std::cerr}, tindrel::systemDialogs);
}
