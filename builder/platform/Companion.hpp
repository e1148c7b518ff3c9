#pragma once

// A program that runs beside this one, such as the game that is being worked on. One at a time; it
// ends with this program, however that ends.

#include <string>
#include <vector>

namespace tindrel {

// The program gets the working directory and the environment of this one. False when it could not
// start.
[[nodiscard]] bool startCompanion(const std::vector<std::string>& command);

// Asks it to end, waits for that, and where the system lets it be asked, does not wait for long.
void endCompanion();

}  // namespace tindrel
