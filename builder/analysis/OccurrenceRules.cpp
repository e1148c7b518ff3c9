#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "analysis/HtmlText.hpp"
#include "analysis/InputSequence.hpp"
#include "analysis/LineArguments.hpp"
#include "analysis/OccurrenceRefiner.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace {

bool isNumber(std::string_view token) {
    if (!token.empty() && token.front() == '+') token.remove_prefix(1);
    float value = 0;
    const char* const last = token.data() + token.size();
    const auto [end, error] = std::from_chars(token.data(), last, value);
    return error == std::errc{} && end == last && std::isfinite(value);
}

bool isInteger(std::string_view token) {
    return integer(token).has_value();
}

bool isIntegerIn(std::string_view token, int low, int high) {
    const std::optional<int> value = integer(token);
    return value && *value >= low && *value <= high;
}

bool allNumbers(Args args) {
    return std::all_of(args.begin(), args.end(), isNumber);
}
bool allIntegers(Args args) {
    return std::all_of(args.begin(), args.end(), isInteger);
}

// Forms that many rules share.

template <int Low, int High>
bool oneIntegerIn(const TextLine& line, GameFacts&) {
    return line.args.size() == 1 && isIntegerIn(line.args[0], Low, High);
}

constexpr int kAny = 1'000'000'000;
constexpr auto oneInteger = oneIntegerIn<-kAny, kAny>;
constexpr auto oneCount = oneIntegerIn<0, kAny>;

// From `Least` to `Most` arguments, all of them numbers.
template <std::size_t Least, std::size_t Most>
bool numbers(const TextLine& line, GameFacts&) {
    return line.args.size() >= Least && line.args.size() <= Most && allNumbers(line.args);
}

// "drawmethod"

constexpr std::array<std::string_view, 10> kTransforms = {
    "scale",  "scalex", "scaley",    "flipx",  "flipy",
    "shiftx", "alpha",  "fillcolor", "rotate", "fliprotate"};

bool drawMethodIs(const TextLine& line, std::string_view property) {
    return line.args.size() == 2 && equalsFolded(line.args[0], property);
}

bool positionalDrawMethod(const TextLine& line, GameFacts&) {
    const Args args = line.args;
    return !args.empty() && args.size() <= 10 && allNumbers(args) &&
           (args.size() < 6 || isIntegerIn(args[5], -1, 6)) &&     // alpha
           (args.size() < 7 || isIntegerIn(args[6], -1, kAny)) &&  // remap
           (args.size() < 8 || isIntegerIn(args[7], 0, 0)) &&      // fill
           (args.size() < 10 || isIntegerIn(args[9], -kAny, 1));   // rotated flip
}

// [0-9]{1,3}_[0-9]{1,3}_[0-9]{1,3}|0[xX][0-9A-Fa-f]+|[0-9]+
bool isColour(std::string_view token) {
    const auto digitsOnly = [](std::string_view text, std::size_t most) {
        return !text.empty() && text.size() <= most &&
               std::all_of(text.begin(), text.end(), isDigit);
    };
    if (digitsOnly(token, token.size())) return true;
    if (token.size() > 2 && token[0] == '0' && (token[1] == 'x' || token[1] == 'X')) {
        return token.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string_view::npos;
    }
    const std::size_t first = token.find('_');
    const std::size_t second = token.find('_', first == std::string_view::npos ? first : first + 1);
    return second != std::string_view::npos && digitsOnly(token.substr(0, first), 3) &&
           digitsOnly(token.substr(first + 1, second - first - 1), 3) &&
           digitsOnly(token.substr(second + 1), 3);
}

// Combat

constexpr std::array<std::string_view, 6> kDefenseTypes = {"normal", "shock", "burn",
                                                           "freeze", "steal", "blast"};

bool typedDefense(const TextLine& line, GameFacts&) {
    if (line.args.size() < 2 || line.args.size() > 8 || !allNumbers(line.args.subspan(1))) {
        return false;
    }
    const std::string type = toLower(line.args[0]);
    const bool numbered = type.starts_with("normal") && type.size() > 6 &&
                          std::all_of(type.begin() + 6, type.end(), isDigit);
    return numbered || isOneOf(type, kDefenseTypes);
}

// An attack chain's numbers, and whether a zero stands between two others.
bool isChain(Args args) {
    return !args.empty() && isIntegerIn(args[0], 1, kAny) &&
           std::all_of(args.begin(), args.end(),
                       [](std::string_view a) { return isIntegerIn(a, 0, kAny); });
}
bool hasZero(Args args) {
    return std::any_of(args.begin(), args.end(),
                       [](std::string_view a) { return integer(a) == 0; });
}
bool hasInnerZero(Args args) {
    const auto isZero = [](std::string_view a) { return integer(a) == 0; };
    const auto zero = std::find_if(args.begin(), args.end(), isZero);
    return std::any_of(zero, args.end(), [&](std::string_view a) { return !isZero(a); });
}

bool blastBox(const TextLine& line, GameFacts&) {
    const Args args = line.args;
    if (args.size() == 4) return allIntegers(args) && allZero(args);
    return (args.size() == 9 || args.size() == 10) && allIntegers(args);
}

bool attackBox(const TextLine& line, GameFacts&) {
    return line.args.size() >= 5 && line.args.size() <= 10 && allIntegers(line.args);
}

constexpr std::array<std::string_view, 14> kTypeNames = {
    "none",    "ground", "player", "enemy",   "item",     "obstacle", "projectile",
    "steamer", "shot",   "trap",   "textbox", "endlevel", "npc",      "panel"};

constexpr std::array<std::string_view, 15> kAiMoveFlags = {
    "normal", "chase", "chasez", "chasex", "avoid",  "avoidz",      "avoidx",      "wander",
    "biker",  "arrow", "star",   "bomb",   "nomove", "ignoreholes", "notargetidle"};

template <const auto& kWords>
bool wordsOf(const TextLine& line, GameFacts&) {
    return !line.args.empty() && std::all_of(line.args.begin(), line.args.end(),
                                             [](std::string_view a) { return isOneOf(a, kWords); });
}

// Types of damage on landing that the runtime resolves by name.
constexpr std::array<std::string_view, 9> kLandingTypes = {
    "attack", "attack1", "normal", "normal1", "burn", "blast", "freeze", "shock", "steal"};

bool landingDamage(const TextLine& line, GameFacts&) {
    const Args args = line.args;
    return !args.empty() && args.size() <= 3 && isIntegerIn(args[0], 0, kAny) &&
           (args.size() < 2 || isIntegerIn(args[1], 0, 1)) &&
           (args.size() < 3 || isOneOf(args[2], kLandingTypes));
}

// Input

// Ahead of the name of what the keys bring about.
bool hasCommand(Args args) {
    return args.size() >= 2;
}
std::string noCommand(const TextLine& line, GameFacts&) {
    return hasCommand(line.args) ? faultOfInputSequence(line.args.first(line.args.size() - 1)) : "";
}
bool commandSequence(const TextLine& line, GameFacts& facts) {
    return hasCommand(line.args) && noCommand(line, facts).empty();
}

bool hasCancelWindow(Args args) {
    return args.size() >= 5 && std::all_of(args.begin(), args.begin() + 3, [](std::string_view a) {
               return isIntegerIn(a, 0, kAny);
           });
}
std::string noCancel(const TextLine& line, GameFacts&) {
    const Args args = line.args;
    return hasCancelWindow(args) ? faultOfInputSequence(args.subspan(3, args.size() - 4)) : "";
}
bool cancelWindow(const TextLine& line, GameFacts& facts) {
    return hasCancelWindow(line.args) && noCancel(line, facts).empty();
}

// Models

bool knownModels(const TextLine& line, GameFacts& facts) {
    return !line.args.empty() &&
           std::all_of(line.args.begin(), line.args.end(), [&](std::string_view name) {
               return equalsFolded(name, "none") || facts.knowsModel(name);
           });
}

// Stages

// A layer line that asks for no wave: numbers, a blend mode that exists, and nothing behind it but
// zeros. `shift` is 1 for a foreground layer, whose depth stands behind its path.
bool stageLayer(Args args, std::size_t shift) {
    const std::size_t alpha = 10 + shift;
    const std::size_t backgroundSpeed = 15 + shift;
    if (args.empty() || !allNumbers(args.subspan(1))) return false;
    if (args.size() > alpha && !isIntegerIn(args[alpha], 0, 6)) return false;
    for (std::size_t i = alpha + 1; i < std::min(args.size(), backgroundSpeed); ++i) {
        if (!allZero(args.subspan(i, 1))) return false;
    }
    return args.size() <= backgroundSpeed + 1;
}

// What keeps a line from a rule's form.

std::string absent(std::string_view path) {
    return quoteCode(path) + " is not there";
}

std::string noPicture(const TextLine& line, GameFacts& facts) {
    return line.args.empty() || facts.imageExists(line.args[0]) ? "" : absent(line.args[0]);
}

std::string noPalette(const TextLine& line, GameFacts& facts) {
    for (const std::string_view path : line.args) {
        if (equalsFolded(path, "none") || facts.isIndexedImage(path)) continue;
        return facts.imageExists(path) ? quoteCode(path) + " has no palette" : absent(path);
    }
    return {};
}

std::string noModel(const TextLine& line, GameFacts& facts) {
    for (const std::string_view name : line.args) {
        if (equalsFolded(name, "none") || facts.knowsModel(name)) continue;
        return "no model is called " + quoteCode(name);
    }
    return {};
}

std::string noWeaponSpawn(const TextLine& line, GameFacts& facts) {
    if (!facts.isStage() || line.args.empty() || facts.spawnsWeapon(line.args[0])) return {};
    return "inside of another spawn it does nothing";
}

std::string unknownNames(const ScriptReport& report) {
    constexpr std::size_t kMostShown = 3;
    const bool inCode = report.mentioned.size() < report.names.size();
    std::string text;
    for (std::size_t i = 0; i < std::min(report.names.size(), kMostShown); ++i) {
        text += i > 0 ? ", " : inCode ? "it asks for " : "only its comments and texts name ";
        text += quoteCode(report.names[i]);
    }
    if (report.names.size() > kMostShown) {
        text += " and " + std::to_string(report.names.size() - kMostShown) + " more";
    }
    return text;
}

std::string noScript(const TextLine& line, GameFacts& facts) {
    if (line.args.size() != 1) return {};
    const ScriptReport* const report = facts.script(line.args[0]);
    return report == nullptr ? absent(line.args[0]) : unknownNames(*report);
}

// clang-format off
constexpr auto kRules = std::to_array<OccurrenceRule>({
    // Drawing
    {"drawmethod", positionalDrawMethod,
     "Legacy 10-field positional drawmethod scale/flip/shift/alpha/remap/rotate is executed natively; entity remap inheritance (-1) is preserved when fill is zero."},
    {"drawmethod", [](const TextLine& l, GameFacts&) { return drawMethodIs(l, "tintmode") && isIntegerIn(l.args[1], 0, 6); },
     "drawmethod tintmode 0-6 uses the OpenBOR screen/multiply/overlay/hardlight/dodge/half channel blend order."},
    {"drawmethod", [](const TextLine& l, GameFacts&) { return drawMethodIs(l, "tintcolor") && isColour(l.args[1]); },
     "drawmethod tintcolor is parsed and combined with tintmode in the native compositor."},
    {"drawmethod", [](const TextLine& l, GameFacts&) { return drawMethodIs(l, "remap") && isIntegerIn(l.args[1], -1, kAny); },
     "drawmethod remap selects a model palette map; -1 inherits the entity current map."},
    {"drawmethod", [](const TextLine& l, GameFacts&) { return !l.args.empty() && isOneOf(l.args[0], kTransforms); },
     "Direct drawmethod transform is parsed and executed by the native compositor."},
    {"gfxshadow", [](const TextLine& l, GameFacts&) { return (l.args.size() == 1 || l.args.size() == 2) && allIntegers(l.args) && integer(l.args[0]) == 0; },
     "gfxshadow 0 uses the generic OpenBOR shadow sprite beneath native actors."},
    {"gfxshadow", [](const TextLine& l, GameFacts&) { return (l.args.size() == 1 || (l.args.size() == 2 && isIntegerIn(l.args[1], 0, 3))) && integer(l.args[0]) == 1; },
     "gfxshadow 1 projects the current actor frame using stage light/shadow alpha and shadowbase modes 0-3, including platform/2D base selection."},
    {"palette", [](const TextLine& l, GameFacts&) { return l.args.size() == 1 && equalsFolded(l.args[0], "none"); },
     "palette none explicitly disables model palette remapping and requires no native conversion."},
    {"palette", [](const TextLine& l, GameFacts& f) { return l.args.size() == 1 && f.isIndexedImage(l.args[0]); },
     "Indexed GIF/PNG/BMP or ACT base palette is preserved through the native palette loader for remaps.", noPalette},
    {"alternatepal", [](const TextLine& l, GameFacts& f) { return l.args.size() == 1 && f.isIndexedImage(l.args[0]); },
     "Indexed alternate palette asset is loaded through the same native palette-table path used for remaps.", noPalette},
    {"remap", [](const TextLine& l, GameFacts& f) { return l.args.size() == 2 && f.isIndexedImage(l.args[0]) && f.isIndexedImage(l.args[1]); },
     "Indexed source/target palette tables drive the native color-map remap.", noPalette},

    // Scripts
    {"@script", [](const TextLine& l, GameFacts& f) { return !l.text().empty() && !f.isStage() && f.inlineScript(l.text()).clean(); },
     "Inline script body uses only the verified ScriptVM surface and executes in source order on animation frame entry.",
     [](const TextLine& l, GameFacts& f) { return f.isStage() ? "in a stage it does nothing" : unknownNames(f.inlineScript(l.text())); }},
    {"animationscript", [](const TextLine& l, GameFacts& f) { return l.args.size() == 1 && f.script(l.args[0]) != nullptr && f.script(l.args[0])->clean(); },
     "Animation helper script resolves inside data/, uses the verified ScriptVM surface, and frame @cmd calls execute against it.", noScript},

    // Combat
    {"defense", typedDefense,
     "Typed legacy defense factor/pain/knockdown/block fields are consumed by the native defense resolver."},
    {"defense", [](const TextLine& l, GameFacts&) { return l.args.size() == 1 && equalsFolded(l.args[0], "all"); },
     "Legacy defense all without an explicit factor is preserved as factor 1.0."},
    {"combostyle", oneIntegerIn<0, 2>,
     "combostyle 0-2 is consumed by native attack-chain progression, including free-chain style 2."},
    {"combodelay", oneInteger,
     "Numeric combodelay is consumed by native attack-chain timing and resets combo progression after the configured window."},
    {"atchain", [](const TextLine& l, GameFacts& f) { return isChain(l.args) && hasInnerZero(l.args) && f.model() != nullptr && f.model()->comboStyle == 1; },
     "Zero-separated atchain branches are executed by native combostyle=1 dynamic range selection."},
    {"atchain", [](const TextLine& l, GameFacts&) { return isChain(l.args) && !hasZero(l.args); },
     "Linear atchain sequence is executed by native combo progression."},
    {"atchain", [](const TextLine& l, GameFacts&) { return isChain(l.args) && !hasInnerZero(l.args); },
     "Static/trailing-zero attack chains are executed by the native combo runtime."},
    {"blast", blastBox,
     "Legacy blast boxes use OpenBOR blast knockdown, 2.5 horizontal launch and falling-body projectile contact semantics; both 9-field and transitional 10-field forms are handled, and four zero coordinates clear the active box."},
    {"burn", oneIntegerIn<0, 0>,
     "burn 0 disables the legacy burn attack box for the current frame."},
    {"burn", attackBox,
     "Legacy burn attack box is parsed with burn pain/fall/death reaction selection and native attack metadata."},
    {"shock", attackBox,
     "Legacy shock attack box is parsed with shock pain/fall reaction selection and native attack metadata."},
    {"attackone", oneIntegerIn<1, 1>,
     "attackone 1 stops after the first collision for player, coop, enemy, and projectile attacks."},
    {"damageonlanding", landingDamage,
     "Landing force/mode 0-1 is preserved; mode 1 enables falling-body projectile collisions until landing."},
    {"falldie", oneIntegerIn<1, 1>,
     "falldie 1 enters DEATH immediately on lethal damage."},
    {"falldie death", oneIntegerIn<0, 0>,
     "falldie 0 uses the native FALL-first legacy death lifecycle."},
    {"falldie death", oneIntegerIn<2, 2>,
     "falldie 2 runs FALL to completion and then switches to DEATH before removal."},
    {"death", oneIntegerIn<1, 1>,
     "falldie 1 selects immediate death animation instead of entering fall first."},
    {"fmap", oneIntegerIn<0, kAny>,
     "fmap selects the temporary palette map while a native freeze reaction is active and restores the prior map when freeze expires."},
    {"fmap", oneIntegerIn<-1, -1>,
     "fmap -1 explicitly disables freeze-map palette substitution and requires no runtime remap."},
    {"nodieblink", oneIntegerIn<0, 0>,
     "nodieblink 0 selects the native default death lifecycle."},
    {"nodieblink", [](const TextLine& l, GameFacts& f) { return l.args.size() == 1 && integer(l.args[0]) == 2 && f.hasAnimation("death"); },
     "nodieblink 2 removes after the final death frame without blinking."},
    {"nodieblink", oneIntegerIn<2, 2>,
     "nodieblink 2 keeps the death/fall animation visible through its last frame and removes without blinking."},
    {"nodieblink", oneIntegerIn<3, 3>,
     "nodieblink 3 leaves the final death frame as a persistent corpse without blink removal."},
    {"risetime", oneInteger,
     "Numeric risetime adjusts native knockdown recovery using OpenBOR centisecond timing, including negative values that lengthen recovery."},
    {"riseinv", [](const TextLine& l, GameFacts&) { return l.args.size() == 2 && isInteger(l.args[0]) && isInteger(l.args[1]) && integer(l.args[1]) != 0; },
     "Post-rise invulnerability duration is enforced for player, coop and runtime entities; no-blink mode requires no visibility cadence."},
    {"holdblock", oneIntegerIn<1, 1>,
     "holdblock 1 keeps player/coop block state and animation active while Special is held, resuming after blockpain until release."},
    {"chargetime", [](const TextLine& l, GameFacts&) { return l.args.size() == 1 && isNumber(l.args[0]) && parseFloatOr(l.args[0], 0) > 0; },
     "Chargeattack release timing is enforced from the declared centisecond threshold for player and coop input."},

    // Grabs and throws
    {"throw", numbers<1, 2>,
     "Legacy throw distance/height are stored as victim model traits and consumed by native grab throws."},
    {"throwdamage", oneCount,
     "Numeric throwdamage is consumed directly by the native grab/throw damage path."},
    {"grabresistance grab_resistance antigrab", oneInteger,
     "Numeric grab resistance is enforced against attacker grabforce for player, coop, and AI grab selection."},
    {"grabforce", oneInteger,
     "Numeric grabforce gates native player/coop/AI grab selection against target antigrab/grab resistance."},

    // Movement
    {"subject_to_wall", oneIntegerIn<0, 1>,
     "subject_to_wall 0/1 directly gates native wall collision for player, coop and runtime entities."},
    {"subject_to_obstacle", oneIntegerIn<0, 0>,
     "subject_to_obstacle 0 explicitly opts the model out of obstacle blocking and requires no obstacle collision response."},
    {"subject_to_minz subject_to_maxz", oneIntegerIn<0, 1>,
     "Model Z-bound participation flag is enforced for player, coop and runtime entities against stage min/max Z."},
    {"subject_to_platform", oneIntegerIn<0, 1>,
     "subject_to_platform controls both dynamic platform top height and side collision for player, coop and runtime entities."},
    {"facing", oneIntegerIn<0, 3>,
     "Legacy facing mode is enforced for player, coop and runtime entities; 0 follows movement, 1/2 force right/left, 3 follows stage scroll direction."},
    {"nomove", [](const TextLine& l, GameFacts&) { return (l.args.size() == 1 || l.args.size() == 2) && isIntegerIn(l.args[0], 0, 1) && isIntegerIn(l.args.back(), 0, 1); },
     "Legacy nomove 0/1 movement constraint is enforced for player, coop and AI entities; optional facing lock is preserved by noflip/facing handling."},
    {"running", numbers<1, 5>,
     "running speed/jump-height/jump-length/Z-control/land-continuation parameters are consumed by native player and coop movement."},
    {"aimove", [](const TextLine& l, GameFacts&) { return l.args.size() == 1 && equalsFolded(l.args[0], "chase"); },
     "Named aimove chase maps to the OpenBOR chase flag and is executed by enemy/NPC AI."},
    {"aimove", wordsOf<kAiMoveFlags>,
     "Named aimove flags are mapped to native chase/avoid/wander/projectile-style movement branches."},
    {"bounce", oneCount,
     "Numeric bounce count is applied to runtime projectiles and falling runtime entities on ground contact."},
    {"platform", [](const TextLine& l, GameFacts& f) { return (l.args.size() == 6 || l.args.size() == 7) && allNumbers(l.args) && f.model() != nullptr; },
     "Legacy 6-field and modern 8-field animation platform geometry are converted to native sloped platform collision."},
    {"platform", [](const TextLine& l, GameFacts& f) { return l.args.size() == 8 && allNumbers(l.args) && f.model() != nullptr; },
     "Eight-value entity platform trapezoid is emitted and participates in dynamic platform side/top collision."},

    // Projectiles and weapons
    {"projectilehit", wordsOf<kTypeNames>,
     "Named projectilehit type masks are converted to OpenBOR type bits and enforced by native projectile collision targeting."},
    {"pbombframe", [](const TextLine& l, GameFacts&) { return (l.args.size() == 1 || l.args.size() == 2) && allIntegers(l.args); },
     "Legacy pbombframe aliases tossframe: trigger frame and projectile altitude drive native bomb spawning."},
    {"remove", oneIntegerIn<0, 1>,
     "Projectile remove contact mode 0/1 is enforced by the runtime projectile lifecycle."},
    {"weapon", [](const TextLine& l, GameFacts& f) { return l.args.size() == 1 && f.spawnsWeapon(l.args[0]) && f.knowsModel(l.args[0]); },
     "Stage weapon spawn is parsed as a weapon item spawn and resolved through model weapon indices.", noWeaponSpawn},
    {"weapons weapon", [](const TextLine& l, GameFacts& f) { return f.model() != nullptr && knownModels(l, f); },
     "Weapon model list is emitted and used for player/coop/AI weapon pickup and action-animation lookup.", noModel},
    {"weapnum shootnum reload counter", oneCount,
     "Simple numeric weapon index/ammo/drop counter is consumed by the native weapon lifecycle."},
    {"typeshot", oneIntegerIn<0, 1>,
     "typeshot 0/1 controls weapon exhaustion/drop behavior in the native weapon lifecycle."},
    {"dust", [](const TextLine& l, GameFacts& f) { return l.args.size() <= 3 && knownModels(l, f); },
     "Model fall/land/jump dust entities are spawned through the generic child-effect runtime at the corresponding movement events.", noModel},

    // Input
    {"com cmd", commandSequence,
     "Custom command sequence uses native-supported direction/action/chord tokens and is matched by runtime input history.", noCommand},
    {"cancel", cancelWindow,
     "Animation cancel window/hit threshold and supported command sequence are executed by the native cancel matcher.", noCancel},

    // Stages
    {"rock", oneIntegerIn<0, 3>,
     "Legacy rock modes 0-3 are applied by native stage motion: steady, floating, periodic double-shake, or continuous rumble."},
    {"water", [](const TextLine& l, GameFacts& f) { return (l.args.size() == 1 || (l.args.size() == 2 && isIntegerIn(l.args[1], 0, 15))) && f.imageExists(l.args[0]); },
     "Legacy water is rendered at BGHeight with per-scanline sine warp (rock 0), perspective/parallax (rock 1), and stage rock modes 2/3; warp 0-15 controls animation speed.", noPicture},
    {"light", [](const TextLine& l, GameFacts&) { return l.args.size() == 2 && allIntegers(l.args); },
     "Stage light vector is consumed by projected gfxshadow rendering."},
    {"shadowalpha", oneIntegerIn<0, 6>,
     "OpenBOR shadow alpha/blend mode 0-6 is consumed by native projected shadow rendering."},
    {"shadowcolor", oneIntegerIn<-1, 1>,
     "Legacy shadowcolor -1/0/1 maps to disabled/default/dark native shadow presentation; indexed dark color 1 is reproduced without requiring a game-specific palette."},
    {"settime", oneIntegerIn<0, 0>,
     "settime 0 disables the stage countdown; the native stage remains untimed."},
    {"notime", oneIntegerIn<1, 1>,
     "notime 1 disables the stage countdown; the native stage remains untimed."},
    {"cameraoffset", [](const TextLine& l, GameFacts&) { return l.args.size() == 2 && allIntegers(l.args); },
     "Camera X/Z offsets are applied to native world-to-screen projection for layers, actors, projectiles and shadows."},
    {"cameratype", oneIntegerIn<0, 1>,
     "cameratype 0/1 maps to scrolling versus fixed native camera behavior."},
    {"bglayer", [](const TextLine& l, GameFacts& f) { return stageLayer(l.args, 0) && f.imageExists(l.args[0]); },
     "Legacy stage layer ratios, offsets, spacing/repeat, depth and OpenBOR alpha blend mode are rendered natively; this occurrence does not request unsupported wave distortion.", noPicture},
    {"fglayer", [](const TextLine& l, GameFacts& f) { return stageLayer(l.args, 1) && f.imageExists(l.args[0]); },
     "Legacy stage layer ratios, offsets, spacing/repeat, depth and OpenBOR alpha blend mode are rendered natively; this occurrence does not request unsupported wave distortion.", noPicture},
    {"frontpanel", [](const TextLine& l, GameFacts& f) { return l.args.size() == 1 && f.imageExists(l.args[0]); },
     "Single-image frontpanel is loaded as a foreground stage layer.", noPicture},
    {"wall", [](const TextLine& l, GameFacts&) { return (l.args.size() == 8 || l.args.size() == 9) && allNumbers(l.args); },
     "Static OpenBOR trapezoid wall geometry and height are used by runtime collision and script wall queries."},
    {"blockade", [](const TextLine& l, GameFacts&) { return (l.args.size() == 1 || l.args.size() == 2) && allIntegers(l.args); },
     "Numeric blockade is emitted as a backward-scroll floor and activated by stage events."},
    {"end", [](const TextLine& l, GameFacts&) { return l.args.empty(); },
     "Bare end marks the stage as ending in the generated stage model."},

    // Campaign
    {"lives credits", oneCount,
     "Level-set lives/credits are generated into stage metadata and consumed by native respawn/continue flow."},
    {"ifcomplete", oneCount,
     "Level-set unlock requirement is generated, persisted across completed campaigns, and enforced by the native set selector."},
    {"scene", [](const TextLine& l, GameFacts& f) { return l.args.size() == 1 && f.faultOfScene(l.args[0]).empty(); },
     "Scene uses supported music/animation/silence directives; GIF playback runs a full animation cycle unless an explicit duration is supplied.",
     [](const TextLine& l, GameFacts& f) { return l.args.size() == 1 ? f.faultOfScene(l.args[0]) : ""; }},
    {"nocost", [](const TextLine& l, GameFacts& f) { return l.args.size() == 1 && isInteger(l.args[0]) && f.isModelRegistry(); },
     "Global nocost is propagated to generated models and energy-cost execution.",
     [](const TextLine&, GameFacts& f) -> std::string { return f.isModelRegistry() ? "" : "only `models.txt` sets it"; }},
});
// clang-format on

}  // namespace

std::span<const OccurrenceRule> occurrenceRules() {
    return kRules;
}

}  // namespace tindrel
