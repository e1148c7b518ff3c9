#pragma once

// What a bot that played the port has met, as a section of the page.

#include "analysis/HtmlPage.hpp"
#include "analysis/PlaytestFile.hpp"

namespace tindrel {

void writePlaytestSection(HtmlPage& page, const PlayedGame& game);

// "cleared 3 of 5 stages", as the page's navigation and headline count them.
[[nodiscard]] std::string stagesCleared(const PlayedGame& game);

}  // namespace tindrel
