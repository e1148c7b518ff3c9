#include "analysis/ScriptKeys.hpp"

#include <algorithm>
#include <functional>
#include <iterator>
#include <unordered_map>

#include "PathEncoding.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

// The tables of a port by what its functions do with them, and their keys: from the very rows by
// which it answers.
enum class Table { None, Actor, Player, Variant, Level, Constant };

struct Call {
    Table table = Table::None;
    bool writes = false;
};

// MENDED keys are unknown where a game is taken to the letter.
enum class Known { PLAIN, MENDED };

struct Key {
    Table table;
    std::string_view name;
    bool read, written;
    Known known;
};

constexpr bool isThere(std::string_view function) {
    return function != "nullptr";
}

constexpr Key kKeys[] = {
#define ACTOR_PROPERTY(key, read, write, whose, reading) \
    {Table::Actor, key, isThere(#read), isThere(#write), Known::reading},
#define PLAYER_PROPERTY(key, read, write, reading) \
    {Table::Player, key, isThere(#read), isThere(#write), Known::reading},
#define VARIANT(key, read, write, reading) \
    {Table::Variant, key, isThere(#read), isThere(#write), Known::reading},
#define LEVEL_PROPERTY(key, read, write, reading) \
    {Table::Level, key, isThere(#read), isThere(#write), Known::reading},
#define NUMBER(name, value, reading) {Table::Constant, name, true, false, Known::reading},
#define WORD(name, key, reading) {Table::Constant, name, true, false, Known::reading},
#include "host/HostConstants.def"
#include "host/HostPlayers.def"
#include "host/HostProperties.def"
#include "host/HostStage.def"
#undef ACTOR_PROPERTY
#undef PLAYER_PROPERTY
#undef VARIANT
#undef LEVEL_PROPERTY
#undef NUMBER
#undef WORD
};

struct Serves {
    std::string_view function;
    Call call;
};
constexpr Serves kServes[] = {
    {"getActorProperty", {Table::Actor, false}},   {"setActorProperty", {Table::Actor, true}},
    {"getPlayerProperty", {Table::Player, false}}, {"setPlayerProperty", {Table::Player, true}},
    {"getVariant", {Table::Variant, false}},       {"setVariant", {Table::Variant, true}},
    {"getLevelProperty", {Table::Level, false}},   {"setLevelProperty", {Table::Level, true}},
    {"constant", {Table::Constant, false}},
};

std::unordered_map<std::string_view, Call> allCalls() {
    std::unordered_map<std::string_view, Call> calls;
    const auto add = [&](std::string_view name, std::string_view function) {
        const auto* const found =
            std::find_if(std::begin(kServes), std::end(kServes),
                         [&](const Serves& serves) { return serves.function == function; });
        if (found != std::end(kServes)) calls[name] = found->call;
    };
#define HOST_FUNCTION(name, needs, function, screening, beforehand) add(#name, #function);
#include "host/HostFunctions.def"
#undef HOST_FUNCTION
    return calls;
}

std::size_t placeOfKey(const Call& call, std::size_t count) {
    switch (call.table) {
        case Table::Actor:
        case Table::Player:
            return 1;
        case Table::Level:
            // A level may stand ahead of the key.
            return count > (call.writes ? 2U : 1U) ? 1 : 0;
        default:
            return 0;
    }
}

bool isKey(const Call& call, std::string_view name, bool asWritten) {
    return std::any_of(std::begin(kKeys), std::end(kKeys), [&](const Key& key) {
        return key.table == call.table && key.name == name &&
               !(key.known == Known::MENDED && asWritten) && (call.writes ? key.written : key.read);
    });
}

// Names of animations and types are constants too, and so are the keys of actors.
bool isConstant(std::string_view name, bool asWritten) {
    constexpr std::string_view kOfActors = "entity_property_";
    if (name.starts_with("ani_") || name.starts_with("type_")) return true;
    if (isKey({Table::Constant, false}, name, asWritten)) return true;
    if (asWritten || !name.starts_with(kOfActors)) return false;
    const std::string_view key = name.substr(kOfActors.size());
    return isKey({Table::Actor, false}, key, false) || isKey({Table::Actor, true}, key, false);
}

}  // namespace

bool ScriptKeys::answers(std::string_view function, std::string_view text, std::size_t index,
                         std::size_t count) const {
    static const std::unordered_map<std::string_view, Call> kCalls = allCalls();
    const std::string name = toLower(function);
    const auto call = kCalls.find(name);
    if (call == kCalls.end() || index != placeOfKey(call->second, count)) return true;
    const std::string key = toLower(PathEncoding::text(text));
    if (call->second.table == Table::Constant) return isConstant(key, asWritten_);
    return isKey(call->second, key, asWritten_);
}

void ScriptKeys::note(std::string_view function, std::string_view text, const std::string& file,
                      std::uint64_t line) {
    const std::string name = toLower(function);
    const std::string key = toLower(PathEncoding::text(text));
    if (!places_.emplace(file, line, name, key).second) return;
    UnansweredKey& known =
        keys_.try_emplace({name, key}, UnansweredKey{name, key, 0, file, line}).first->second;
    ++known.places;
}

std::vector<UnansweredKey> ScriptKeys::unanswered() const {
    std::vector<UnansweredKey> keys;
    for (const auto& [name, key] : keys_) keys.push_back(key);
    std::ranges::stable_sort(keys, std::greater<>(), &UnansweredKey::places);
    return keys;
}

}  // namespace tindrel
