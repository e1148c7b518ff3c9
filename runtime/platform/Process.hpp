#pragma once

// What the system knows of this process, and its way to speak to a player without a console.

#include <filesystem>
#include <string>
#include <string_view>

namespace port::platform {

// The running program's own file; empty when the system does not tell.
[[nodiscard]] std::filesystem::path ownPath();

// A path as the entry function received it: UTF-8 on Windows, the system's own bytes elsewhere.
[[nodiscard]] std::filesystem::path pathFromArgument(const std::string& argument);

// Whether the system's users expect arguments in any case.
[[nodiscard]] bool foldsArguments();

// A box with an error sign; returns when the player closes it. Nothing on systems without boxes,
// where the error stream reaches the player. Both texts are UTF-8.
void showError(std::string_view title, std::string_view message);

// What the player has asked for on the command line: on the output, or in a box where programs have
// none. UTF-8.
void tell(std::string_view title, std::string_view text);

}  // namespace port::platform
