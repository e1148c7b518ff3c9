#include "reader/StageReader.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

#include "reader/DataPaths.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

using Args = std::span<const std::string_view>;

std::int32_t integer(std::string_view token) {
    return parseIntOr(token, 0);
}

std::int32_t clamped(std::string_view token, std::int32_t low, std::int32_t high) {
    return std::clamp(parseIntOr(token, 0), low, high);
}

bool flag(std::string_view token) {
    return parseIntOr(token, 0) != 0;
}

std::int32_t saturatingAdd(std::int32_t a, std::int32_t b) {
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t sum = std::int64_t{a} + b;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(sum, Limits::min(), Limits::max()));
}

// Fields that a list of numbers fills by position. A list that ends early, or a word that is no
// number, leaves its field as it stands.
template <typename Record>
using NumberField = std::variant<std::int32_t Record::*, float Record::*>;

template <typename Record>
void readNumbers(Record& record, Args args, std::span<const NumberField<Record>> fields) {
    for (std::size_t i = 0; i < std::min(args.size(), fields.size()); ++i) {
        if (const auto* whole = std::get_if<std::int32_t Record::*>(&fields[i])) {
            record.** whole = parseIntOr(args[i], record.**whole);
        } else {
            float& value = record.*std::get<float Record::*>(fields[i]);
            value = parseFloatOr(args[i], value);
        }
    }
}

// Behind the path of "bglayer", and of "fglayer" behind its zOrder; "background" knows those up to
// zRepeat.
constexpr NumberField<LayerDef> kLayerFields[] = {
    &LayerDef::xRatio,       &LayerDef::zRatio,    &LayerDef::xOffset,      &LayerDef::zOffset,
    &LayerDef::xSpacing,     &LayerDef::zSpacing,  &LayerDef::xRepeat,      &LayerDef::zRepeat,
    &LayerDef::transparency, &LayerDef::alpha,     &LayerDef::waterMode,    &LayerDef::amplitude,
    &LayerDef::wavelength,   &LayerDef::waveSpeed, &LayerDef::bgSpeedRatio,
};
constexpr std::size_t kBackgroundFields = 8;

constexpr NumberField<GeometryDef> kGeometryFields[] = {
    &GeometryDef::x, &GeometryDef::z,     &GeometryDef::w,
    &GeometryDef::h, &GeometryDef::depth, &GeometryDef::altitude,
};
constexpr std::size_t kMinGeometryArgs = 4;
// From here on a wall or hole is in the engine's own form: position, four corners, depth, height.
constexpr std::size_t kMinShapeArgs = 7;
constexpr std::size_t kMaxShapeArgs = 8;

struct PlayerSpawnFields {
    std::int32_t StageDef::*x;
    std::int32_t StageDef::*z;
    std::int32_t StageDef::*a;
    bool StageDef::*defined;
};

constexpr PlayerSpawnFields kPlayerSpawns[] = {
    {&StageDef::playerStartX, &StageDef::playerStartZ, &StageDef::playerStartA,
     &StageDef::player1SpawnDefined},
    {&StageDef::player2StartX, &StageDef::player2StartZ, &StageDef::player2StartA,
     &StageDef::player2SpawnDefined},
    {&StageDef::player3StartX, &StageDef::player3StartZ, &StageDef::player3StartA,
     &StageDef::player3SpawnDefined},
    {&StageDef::player4StartX, &StageDef::player4StartZ, &StageDef::player4StartA,
     &StageDef::player4SpawnDefined},
};

struct StageParser {
    explicit StageParser(Reading& how) : reading(how) {}

    Reading& reading;
    std::uint32_t line = 0;  // that is being read
    StageDef stage;
    bool inSpawn = false;
    SpawnDef spawn;
    std::int32_t spawnSequence = 0;  // drawn when the block opened
    std::int32_t nextSpawnId = 0, nextSequence = 0;
    std::vector<std::size_t> pendingEvents;  // indexes of events that may yet receive an "at"

    StageEventDef& addEvent(std::string_view kind) {
        StageEventDef event;
        event.id = static_cast<std::int32_t>(stage.events.size());
        event.kind = kind;
        stage.instructions.push_back({nextSequence++, kInstructionEvent, event.id});
        return stage.events.emplace_back(std::move(event));
    }

    void setTime(StageEventDef& event, std::int32_t at) {
        event.at = at;
        event.hasAt = true;
    }

    void awaitTime(const StageEventDef& event) {
        pendingEvents.push_back(static_cast<std::size_t>(event.id));
    }

    // A blockade that no "at" followed fires where it blocks.
    void closePending() {
        for (const std::size_t index : pendingEvents) {
            StageEventDef& event = stage.events[index];
            if (event.kind == "blockade" && !event.hasAt && event.value != 0) {
                setTime(event, event.value);
            }
        }
        pendingEvents.clear();
    }

    void openSpawn(std::string_view model, SpawnType type) {
        closeSpawn();
        spawn.id = nextSpawnId++;
        spawn.model = model;
        spawn.spawnType = type;
        spawnSequence = nextSequence++;
        inSpawn = true;
    }

    void closeSpawn() {
        if (!inSpawn) return;
        if (spawn.alias.empty()) spawn.alias = spawn.model;
        stage.instructions.push_back({spawnSequence, kInstructionSpawn, spawn.id});
        stage.spawns.push_back(std::exchange(spawn, {}));
        inSpawn = false;
    }

    // One "at" serves the open spawn and all waiting events; what nothing takes moves the camera.
    void bindTime(Args args) {
        const std::int32_t at = args.empty() ? 0 : integer(args[0]);
        bool used = !pendingEvents.empty();
        if (inSpawn && !spawn.hasAt) {
            spawn.at = at;
            spawn.hasAt = true;
            used = true;
        }
        for (const std::size_t index : pendingEvents) setTime(stage.events[index], at);
        pendingEvents.clear();
        if (!used) setTime(addEvent("scrollat"), at);
    }

    void addWait(Args args) {
        StageEventDef& event = addEvent("wait");
        args.empty() ? awaitTime(event) : setTime(event, integer(args[0]));
    }

    void addGroup(Args args) {
        StageEventDef& event = addEvent("group");
        if (!args.empty()) event.value = integer(args[0]);
        event.group = args.size() > 1 ? integer(args[1]) : event.value;
        awaitTime(event);
    }

    void addBlockade(Args args) {
        StageEventDef& event = addEvent("blockade");
        if (!args.empty()) event.value = integer(args[0]);
        args.size() > 1 ? setTime(event, integer(args[1])) : awaitTime(event);
    }

    void addNoJoin(Args args) {
        StageEventDef& event = addEvent("nojoin");
        event.value = args.empty() || parseIntOr(args[0], 1) != 0 ? 1 : 0;
        awaitTime(event);
    }

    void addScroll(std::string_view kind, Args args) {
        stage.scrollSpeed = integer(args[0]);
        addEvent(kind).value = stage.scrollSpeed;
    }

    void addBranch(Args args) {
        stage.branchStage = normalizeDataPath(args[0]);
        addEvent("branch").text = args[0];
    }

    void setPlayerSpawn(const PlayerSpawnFields& player, Args args) {
        if (args.size() < 3 && !reading.mends(Mend::kPlayerSpawn, line)) return;
        stage.*player.x = integer(args[0]);
        stage.*player.z = saturatingAdd(integer(args[1]), stage.zMin);
        stage.*player.a = args.size() < 3 ? 0 : integer(args[2]);
        stage.*player.defined = true;
    }

    void setType(Args args) {
        stage.typeName = toLower(args[0]);
        if (stage.typeName == "none" || stage.typeName == "0") stage.cameraType = 1;
    }

    LayerDef& addLayer(std::string_view kind, Args args) {
        LayerDef& layer = stage.layers.emplace_back();
        layer.kind = kind;
        layer.path = normalizeDataPath(args[0]);
        return layer;
    }

    void addBackground(Args args) {
        LayerDef& layer = addLayer("background", args);
        stage.background = layer.path;
        readNumbers<LayerDef>(layer, args.subspan(1),
                              std::span(kLayerFields).first(kBackgroundFields));
    }

    void addPanel(Args args) { stage.panels.push_back(addLayer("panel", args).path); }

    void addFrontPanel(Args args) { addLayer("frontpanel", args).xRatio = 1.5F; }

    void addBackgroundLayer(Args args) {
        LayerDef& layer = addLayer("bglayer", args);
        readNumbers<LayerDef>(layer, args.subspan(1), kLayerFields);
        layer.alpha = std::clamp(layer.alpha, 0, 6);
    }

    void addForegroundLayer(Args args) {
        LayerDef& layer = addLayer("fglayer", args);
        layer.xRatio = layer.zRatio = 1;
        if (args.size() < 2) return;
        layer.zOrder = integer(args[1]);
        readNumbers<LayerDef>(layer, args.subspan(2), kLayerFields);
        layer.alpha = std::clamp(layer.alpha, 0, 6);
    }

    void addGeometry(std::string_view kind, Args args) {
        GeometryDef& geometry = stage.geometry.emplace_back();
        geometry.kind = kind;
        readNumbers<GeometryDef>(geometry, args, kGeometryFields);
        const bool mayHaveShape = kind == "wall" || kind == "hole";
        if (!mayHaveShape || args.size() < kMinShapeArgs) return;
        geometry.openborShape = true;
        for (std::size_t i = 0; i < std::min(args.size(), kMaxShapeArgs); ++i) {
            geometry.shape[i] = parseFloatOr(args[i], 0);
        }
    }

    void setCoordinates(Args args) {
        spawn.x = integer(args[0]);
        if (args.size() > 1) spawn.z = parseIntOr(args[1], 200);
        if (args.size() > 2) spawn.a = integer(args[2]);
        if (args.size() > 3) spawn.y = integer(args[3]);
    }

    void setBoss(Args args) {
        spawn.boss = args.empty() || parseIntOr(args[0], 1) != 0;
        if (spawn.boss) spawn.spawnType = kSpawnBoss;
    }

    // The letters of "order" pick panels, 'a' the first; one bad letter voids the whole order.
    void orderPanels() {
        std::vector<std::string> ordered;
        for (const char letter : toLower(stage.panelOrder)) {
            const std::size_t index = static_cast<std::size_t>(letter - 'a');
            if (letter < 'a' || index >= stage.panels.size()) {
                stage.panelOrderValid = false;
                return;
            }
            ordered.push_back(stage.panels[index]);
        }
        if (!ordered.empty()) stage.panels = std::move(ordered);
    }

    void readLine(const TextLine& text);
};

struct StageKeyword {
    std::string_view name;
    std::size_t minArgs;
    void (*action)(StageParser&, Args);
};

// These share one "at"; any other word ends the wait for it.
constexpr StageKeyword kTimelineKeywords[] = {
    {"at", 0, [](StageParser& p, Args a) { p.bindTime(a); }},
    {"wait", 0, [](StageParser& p, Args a) { p.addWait(a); }},
    {"group", 0, [](StageParser& p, Args a) { p.addGroup(a); }},
    {"blockade", 0, [](StageParser& p, Args a) { p.addBlockade(a); }},
    {"nojoin", 0, [](StageParser& p, Args a) { p.addNoJoin(a); }},
    {"canjoin", 0, [](StageParser& p, Args) { p.awaitTime(p.addEvent("canjoin")); }},
};

// Inside a spawn block, where they go before the stage's own keywords.
constexpr StageKeyword kSpawnKeywords[] = {
    {"alias", 1, [](StageParser& p, Args a) { p.spawn.alias = a[0]; }},
    {"item", 1, [](StageParser& p, Args a) { p.spawn.item = a[0]; }},
    {"map", 1, [](StageParser& p, Args a) { p.spawn.map = a[0]; }},
    {"colourmap", 1, [](StageParser& p, Args a) { p.spawn.map = a[0]; }},
    {"colormap", 1, [](StageParser& p, Args a) { p.spawn.map = a[0]; }},
    {"palette", 1, [](StageParser& p, Args a) { p.spawn.map = a[0]; }},
    {"health", 1, [](StageParser& p, Args a) { p.spawn.health = parseIntOr(a[0], -1); }},
    {"score", 1, [](StageParser& p, Args a) { p.spawn.score = integer(a[0]); }},
    {"spawnscript", 1,
     [](StageParser& p, Args a) { p.spawn.spawnScript = normalizeDataPath(a[0]); }},
    {"coords", 1, [](StageParser& p, Args a) { p.setCoordinates(a); }},
    {"boss", 0, [](StageParser& p, Args a) { p.setBoss(a); }},
    {"flip", 1, [](StageParser& p, Args a) { p.spawn.flip = flag(a[0]); }},
    {"weapon", 0, [](StageParser&, Args) {}},  // opens no block here
};

constexpr StageKeyword kStageKeywords[] = {
    {"spawn", 0,
     [](StageParser& p, Args a) { a.empty() ? p.closeSpawn() : p.openSpawn(a[0], kSpawnPlain); }},
    {"item", 1, [](StageParser& p, Args a) { p.openSpawn(a[0], kSpawnItem); }},
    {"weapon", 1, [](StageParser& p, Args a) { p.openSpawn(a[0], kSpawnWeapon); }},
    {"set", 0, [](StageParser& p, Args a) { a.empty() ? p.closeSpawn() : void(); }},
    {"file", 0, [](StageParser& p, Args a) { a.empty() ? p.closeSpawn() : void(); }},

    {"background", 1, [](StageParser& p, Args a) { p.addBackground(a); }},
    {"panel", 1, [](StageParser& p, Args a) { p.addPanel(a); }},
    {"frontpanel", 1, [](StageParser& p, Args a) { p.addFrontPanel(a); }},
    {"bglayer", 1, [](StageParser& p, Args a) { p.addBackgroundLayer(a); }},
    {"fglayer", 1, [](StageParser& p, Args a) { p.addForegroundLayer(a); }},
    {"order", 1, [](StageParser& p, Args a) { p.stage.panelOrder += a[0]; }},

    {"wall", kMinGeometryArgs, [](StageParser& p, Args a) { p.addGeometry("wall", a); }},
    {"platform", kMinGeometryArgs, [](StageParser& p, Args a) { p.addGeometry("platform", a); }},
    {"hole", kMinGeometryArgs, [](StageParser& p, Args a) { p.addGeometry("hole", a); }},
    {"obstacle", kMinGeometryArgs, [](StageParser& p, Args a) { p.addGeometry("obstacle", a); }},

    {"rock", 1, [](StageParser& p, Args a) { p.stage.rockMode = clamped(a[0], 0, 3); }},
    {"type", 1, [](StageParser& p, Args a) { p.setType(a); }},
    {"direction", 1, [](StageParser& p, Args a) { p.stage.direction = toLower(a[0]); }},
    {"music", 1,
     [](StageParser& p, Args a) {
         p.stage.music = normalizeDataPath(a[0]);
         if (a.size() > 1) p.stage.musicLoop = flag(a[1]);
     }},
    {"bossmusic", 1,
     [](StageParser& p, Args a) {
         p.stage.bossMusic = normalizeDataPath(a[0]);
         if (a.size() > 1) p.stage.bossMusicOffset = parseNonNegative(a[1]);
     }},
    {"water", 1,
     [](StageParser& p, Args a) {
         p.stage.waterPath = normalizeDataPath(a[0]);
         if (a.size() > 1) p.stage.waterWarp = integer(a[1]);
     }},
    {"light", 2,
     [](StageParser& p, Args a) {
         p.stage.stageLightX = integer(a[0]);
         p.stage.stageLightY = integer(a[1]);
     }},
    {"setweap", 1, [](StageParser& p, Args a) { p.stage.setWeapon = parseNonNegative(a[0]); }},
    {"settime", 1, [](StageParser& p, Args a) { p.stage.setTime = parseNonNegative(a[0]); }},
    {"cameratype", 1, [](StageParser& p, Args a) { p.stage.cameraType = integer(a[0]); }},
    {"cameraoffset", 2,
     [](StageParser& p, Args a) {
         p.stage.cameraOffsetX = integer(a[0]);
         p.stage.cameraOffsetY = integer(a[1]);
     }},
    {"shadowcolor", 1, [](StageParser& p, Args a) { p.stage.shadowColor = parseIntOr(a[0], -1); }},
    {"shadowalpha", 1, [](StageParser& p, Args a) { p.stage.shadowAlpha = clamped(a[0], 0, 6); }},
    {"noslow", 1, [](StageParser& p, Args a) { p.stage.noSlow = flag(a[0]); }},
    {"notime", 1, [](StageParser& p, Args a) { p.stage.noTime = flag(a[0]); }},
    {"scrollx", 1, [](StageParser& p, Args a) { p.addScroll("scrollx", a); }},
    {"scrollspeed", 1, [](StageParser& p, Args a) { p.addScroll("scrollspeed", a); }},
    {"spawn1", 2, [](StageParser& p, Args a) { p.setPlayerSpawn(kPlayerSpawns[0], a); }},
    {"spawn2", 2, [](StageParser& p, Args a) { p.setPlayerSpawn(kPlayerSpawns[1], a); }},
    {"spawn3", 2, [](StageParser& p, Args a) { p.setPlayerSpawn(kPlayerSpawns[2], a); }},
    {"spawn4", 2, [](StageParser& p, Args a) { p.setPlayerSpawn(kPlayerSpawns[3], a); }},
    {"next", 1, [](StageParser& p, Args a) { p.stage.nextStage = normalizeDataPath(a[0]); }},
    {"levelscript", 1,
     [](StageParser& p, Args a) { p.stage.levelScript = normalizeDataPath(a[0]); }},
    {"endlevel", 0, [](StageParser& p, Args) { p.stage.endLevel = true; }},
    {"end", 0, [](StageParser& p, Args) { p.stage.endLevel = true; }},
    {"branch", 1, [](StageParser& p, Args a) { p.addBranch(a); }},
};

// True when the line's word is in the table, also with too few arguments to act.
bool act(StageParser& parser, const TextLine& line, std::span<const StageKeyword> keywords) {
    const auto keyword = std::find_if(keywords.begin(), keywords.end(),
                                      [&](const auto& row) { return row.name == line.key; });
    if (keyword == keywords.end()) return false;
    if (line.args.size() >= keyword->minArgs) keyword->action(parser, line.args);
    return true;
}

// "map3" is "map 3" with the number glued on.
std::string_view gluedMapNumber(std::string_view key) {
    if (key.substr(0, 3) != "map") return {};
    const std::string_view digits = key.substr(3);
    return std::all_of(digits.begin(), digits.end(), isDigit) ? digits : std::string_view{};
}

void StageParser::readLine(const TextLine& text) {
    line = text.line;
    if (act(*this, text, kTimelineKeywords)) return;
    closePending();
    if (inSpawn) {
        if (const auto number = gluedMapNumber(text.key); !number.empty()) {
            spawn.map = number;
            return;
        }
        if (act(*this, text, kSpawnKeywords)) return;
    }
    act(*this, text, kStageKeywords);
}

}  // namespace

StageDef parseStage(const TextFile& file, const LevelSetDef& set, const DepthLimits& depth,
                    Reading& reading) {
    StageParser parser(reading);
    StageDef& stage = parser.stage;
    stage.setName = set.name;
    stage.setOrder = set.order;
    stage.lives = set.lives;
    stage.credits = set.credits;
    stage.canSave = set.canSave;
    stage.skipSelect = set.skipSelect;
    stage.completeBg = set.completeBg;
    stage.noShare = set.noShare;
    stage.ifComplete = set.ifComplete;
    stage.zMin = depth.zMin;
    stage.zMax = depth.zMax;
    stage.backgroundHeight = depth.backgroundHeight;
    for (const TextLine& line : file) parser.readLine(line);
    parser.closePending();
    parser.closeSpawn();
    parser.orderPanels();
    return std::move(stage);
}

}  // namespace tindrel
