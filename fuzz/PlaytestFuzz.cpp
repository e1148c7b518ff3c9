// The report of a bot's play, which anybody may have written: it is taken or refused with a reason,
// and what is taken is in order.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.hpp"
#include "analysis/PlaytestFile.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using tindrel::fuzz::require;
    std::string why;
    const auto played = tindrel::parsePlaytest({reinterpret_cast<const char*>(data), size}, why);
    require(played.has_value() == why.empty(), "what is refused has a reason");
    if (!played) return 0;
    for (const tindrel::PlayedFaults& faults : played->faults) {
        require(std::ranges::is_sorted(faults.texts, std::ranges::greater(),
                                       [](const auto& entry) { return entry.second; }),
                "the most frequent stand first");
    }
    require(std::ranges::all_of(played->neverMet,
                                [&](const std::string& m) { return played->models.contains(m); }),
            "models that never came are models");
    return 0;
}
