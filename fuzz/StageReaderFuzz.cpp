// A level list and, behind a record separator, a stage file.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "Require.hpp"
#include "reader/LevelSets.hpp"
#include "reader/StageReader.hpp"

using tindrel::fuzz::require;

namespace {

void checkStage(const tindrel::StageDef& stage) {
    std::set<std::int32_t> spawns;
    std::set<std::int32_t> events;
    for (const auto& spawn : stage.spawns) spawns.insert(spawn.id);
    for (const auto& event : stage.events) events.insert(event.id);
    require(spawns.size() == stage.spawns.size() && events.size() == stage.events.size(),
            "numbers come once");
    for (const auto& instruction : stage.instructions) {
        const auto& numbers = instruction.kind == tindrel::kInstructionSpawn ? spawns : events;
        require(numbers.contains(instruction.refId), "an instruction leads to something");
    }
    for (const auto& layer : stage.layers) {
        require(std::isfinite(layer.xRatio) && std::isfinite(layer.zRatio), "numbers are finite");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t end = text.find('\x1E');
    const tindrel::TextFile list{std::string(text.substr(0, end))};
    const tindrel::TextFile file{
        std::string(end == std::string_view::npos ? text : text.substr(end + 1))};
    const auto sets = tindrel::readLevelSets(list);
    const auto set = sets.empty() ? tindrel::LevelSetDef{} : sets.front();
    checkStage(tindrel::parseStage(file, set, set.depth));
    return 0;
}
