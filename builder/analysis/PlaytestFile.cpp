#include "analysis/PlaytestFile.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <system_error>

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using Json = nlohmann::json;

// Real reports stay below one MiB. In memory the worst that a file may hold takes sixty times its
// size.
constexpr std::uintmax_t kMostBytes = 8U << 20U;

constexpr const char* kFaultKeys[] = {"scriptErrors", "unsupported", "missingPictures",
                                      "missingSounds"};

// A member that is there and is of that kind, or nothing.
const Json* member(const Json& object, const std::string& name, Json::value_t type) {
    if (!object.is_object()) return nullptr;
    const auto found = object.find(name);
    return found != object.end() && found->type() == type ? &*found : nullptr;
}

std::uint64_t number(const Json& object, const std::string& name) {
    const Json* const found = member(object, name, Json::value_t::number_unsigned);
    return found == nullptr ? 0 : found->get<std::uint64_t>();
}

std::string text(const Json& object, const std::string& name) {
    const Json* const found = member(object, name, Json::value_t::string);
    return found == nullptr ? std::string() : found->get<std::string>();
}

PlayedFaults faults(const Json& summary, const std::string& name) {
    PlayedFaults result;
    result.omitted = number(summary, name + "Omitted");
    const Json* const counts = member(summary, name, Json::value_t::object);
    if (counts == nullptr) return result;
    for (const auto& [fault, times] : counts->items()) {
        if (times.is_number_unsigned())
            result.texts.emplace_back(fault, times.get<std::uint64_t>());
    }
    std::ranges::stable_sort(result.texts, std::ranges::greater(),
                             [](const auto& entry) { return entry.second; });
    return result;
}

}  // namespace

std::optional<PlayedGame> parsePlaytest(std::string_view json, std::string& why) {
    const Json report = Json::parse(json, nullptr, /*allow_exceptions=*/false);
    if (report.is_discarded()) {
        why = "not JSON";
        return std::nullopt;
    }
    const Json* const summary = member(report, "summary", Json::value_t::object);
    const Json* const stages = member(report, "stages", Json::value_t::array);
    if (summary == nullptr || stages == nullptr) {
        why = "not the report of a port's --autoplay-report";
        return std::nullopt;
    }
    PlayedGame game;
    game.stagesCleared = number(*summary, "stagesCleared");
    game.stages = number(*summary, "stages");
    for (std::size_t kind = 0; kind < game.faults.size(); ++kind) {
        game.faults[kind] = faults(*summary, kFaultKeys[kind]);
    }
    for (const Json& stage : *stages) {
        game.played.push_back({text(stage, "stage"), text(stage, "result"), number(stage, "ticks"),
                               number(stage, "deaths"), number(stage, "spawned"),
                               number(stage, "spawns")});
        const Json* const met = member(stage, "models", Json::value_t::object);
        if (met == nullptr) continue;
        for (const auto& [model, counts] : met->items()) game.models.insert(model);
    }
    if (const Json* const models = member(*summary, "modelsNeverMet", Json::value_t::array)) {
        for (const Json& model : *models) {
            if (model.is_string()) game.neverMet.push_back(model.get<std::string>());
        }
    }
    game.models.insert(game.neverMet.begin(), game.neverMet.end());
    return game;
}

std::optional<PlayedGame> readPlaytest(const fs::path& file, std::string& why) {
    std::error_code error;
    const std::uintmax_t size = fs::is_regular_file(file, error) ? fs::file_size(file, error) : 0;
    std::ifstream in(file, std::ios::binary);
    if (error || size == 0 || !in) {
        why = "cannot be read";
        return std::nullopt;
    }
    if (size > kMostBytes) {
        why = "too large";
        return std::nullopt;
    }
    std::string json(size, '\0');
    in.read(json.data(), static_cast<std::streamsize>(json.size()));
    json.resize(static_cast<std::size_t>(in.gcount()));
    return parsePlaytest(json, why);
}

}  // namespace tindrel
