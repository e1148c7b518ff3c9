#pragma once

// How a list of arguments becomes the one line that a Windows program is started with.

#include <string>
#include <vector>

namespace tindrel {

// Every argument in double quotes, one blank between them. The program's own splitting gives back
// exactly the arguments, backslashes and quotes included.
[[nodiscard]] std::string quoteCommandLine(const std::vector<std::string>& command);

}  // namespace tindrel
