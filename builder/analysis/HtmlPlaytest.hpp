#pragma once

// What a bot that played the port has met, as a section of the page.

#include "analysis/HtmlPage.hpp"
#include "analysis/PlaytestFile.hpp"

namespace tindrel {

// `outdated` says why the report no longer fits the game, if it does not, with code between
// backquotes.
void writePlaytestSection(HtmlPage& page, const PlayedGame& game, std::string_view outdated);

// "cleared 3 of 5 stages", as the page's navigation and headline count them.
[[nodiscard]] std::string stagesCleared(const PlayedGame& game);

}  // namespace tindrel
