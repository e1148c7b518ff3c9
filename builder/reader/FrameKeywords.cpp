#include <algorithm>
#include <cmath>
#include <optional>

#include "reader/ModelKeywords.hpp"

namespace tindrel {
namespace {

using namespace field;
using Args = KeywordArgs;
using Attack = AttackBoxDef;
using Box = BoxDef;
using Draw = DrawMethodDef;
using F = FrameDef;

constexpr std::int32_t kForever = -1;

constexpr std::size_t kMinAttackArgs = 5;  // box and damage
constexpr std::size_t kClearingBlastArgs = 4;
constexpr std::size_t kBlastArgsWithForce = 10;
constexpr float kBlastDropVx = 2.5F;
constexpr std::int32_t kDropVy = -3;

constexpr std::size_t kMinPlatformArgs = 6;
constexpr std::size_t kPlatformArgsWithPosition = 8;

constexpr NamedValue kLandingTypes[] = {
    {"attack", 1},
    {"normal", 1},
    {"burn", kAttackBurn},
    {"blast", kAttackBlast},
    {"freeze", kAttackFreeze},
    {"shock", kAttackShock},
    {"steal", kAttackSteal},
};

// "attack3" and "normal3" are type 3, and so is a plain "3".
std::int32_t attackTypeOf(std::string_view token) {
    if (const NamedValue* const named = findNamed(kLandingTypes, token)) return named->value;
    constexpr std::size_t kPrefix = std::string_view("attack").size();
    const std::string_view prefix = token.substr(0, kPrefix);
    const bool numbered = equalsFolded(prefix, "attack") || equalsFolded(prefix, "normal");
    return parseIntOr(numbered ? token.substr(kPrefix) : token, -1);
}

template <auto Member>
struct AttackTypeName {
    static void read(ModelParser& parser, std::string_view token) {
        of(parser, Member) = attackTypeOf(token);
    }
};

// A number in front of whatever follows it; two fallbacks tell when there is none.
std::optional<std::int32_t> parseChannel(std::string_view token) {
    const std::int32_t value = parseIntOr(token, 0);
    if (value == 0 && parseIntOr(token, 1) == 1) return std::nullopt;
    return std::clamp(value, 0, 255);
}

// "r_g_b", or one number.
std::int32_t parseColor(std::string_view token) {
    const std::size_t first = token.find('_');
    const std::size_t second = first == token.npos ? token.npos : token.find('_', first + 1);
    if (second == token.npos || second == first + 1) return parseAutoBase(token).value_or(0);
    const auto red = parseChannel(token.substr(0, first));
    const auto green = parseChannel(token.substr(first + 1, second - first - 1));
    const auto blue = parseChannel(token.substr(second + 1));
    return red && green && blue ? (*red << 16) | (*green << 8) | *blue : 0;
}

template <auto Member>
struct Color {
    static void read(ModelParser& parser, std::string_view token) {
        of(parser, Member) = parseColor(token);
    }
};

void setDelay(ModelParser& parser, Args args) {
    const bool forever = equalsFolded(args[0], "infinite") || equalsFolded(args[0], "inf");
    parser.frame.delay = forever ? kForever : std::max(parseIntOr(args[0], 1), 0);
}

void setBodyBox(ModelParser& parser, Args args) {
    FrameDef& frame = parser.frame;
    if (equalsFolded(args[0], "none")) {
        frame.bbox = {};
        frame.hasBBox = false;
    } else if (args.size() >= 4) {
        frame.bbox = {parseIntOr(args[0], 0), parseIntOr(args[1], 0), parseIntOr(args[2], 0),
                      parseIntOr(args[3], 0)};
        frame.hasBBox = frame.bbox.w > 0 && frame.bbox.h > 0;
    }
}

// The short form takes its position from the offset.
void setPlatform(ModelParser& parser, Args args) {
    FrameDef& frame = parser.frame;
    PlatformBoxDef& platform = frame.platform;
    if (args.size() >= kPlatformArgsWithPosition) {
        platform.x = parseFloatOr(args[0], 0);
        platform.z = parseFloatOr(args[1], 0);
        args = args.subspan(2);
    } else {
        platform.x = static_cast<float>(frame.offsetX);
        platform.z = static_cast<float>(frame.offsetY);
    }
    platform.lowerLeft = parseFloatOr(args[0], 0);
    platform.upperLeft = parseFloatOr(args[1], 0);
    platform.lowerRight = parseFloatOr(args[2], 0);
    platform.upperRight = parseFloatOr(args[3], 0);
    platform.depth = std::fabs(parseFloatOr(args[4], 0));
    platform.altitude = std::max(parseFloatOr(args[5], 0), 0.0F);
    frame.hasPlatform = platform.depth != 0 && platform.altitude > 0;
}

// A new attack box; the direction of the push outlives it.
void replaceAttack(FrameDef& frame, const AttackBoxDef& attack) {
    const std::int32_t forceDirection = frame.attack.forceDirection;
    frame.attack = attack;
    frame.attack.forceDirection = forceDirection;
    frame.hasAttack = attack.w > 0 && attack.h > 0;
    frame.pauseTime = attack.pauseTime;
}

void clearAttack(FrameDef& frame) {
    replaceAttack(frame, {});
    frame.knockdown = false;
    frame.dropVx = 0;
    frame.dropVy = kDropVy;
}

bool isZero(std::string_view token) {
    return parseIntOr(token, 1) == 0;
}

bool clearsAttack(ModelParser& parser, Args args, bool blast) {
    if (args.empty()) return false;
    if (equalsFolded(args[0], "none")) return true;
    if (args.size() == 1 && args[0] == "0") return true;
    if (blast && args.size() == kClearingBlastArgs && allZero(args)) return true;
    return args.size() < kMinAttackArgs && std::all_of(args.begin(), args.end(), isZero) &&
           parser.mends(Mend::kZeroAttack);
}

void readAttack(ModelParser& parser, Args args, std::int32_t type, bool blast) {
    FrameDef& frame = parser.frame;
    if (clearsAttack(parser, args, blast)) return clearAttack(frame);
    if (args.size() < kMinAttackArgs) return;

    std::size_t next = 0;
    const auto take = [&](std::int32_t fallback = 0) {
        const std::size_t i = next++;
        return i < args.size() ? parseIntOr(args[i], fallback) : 0;
    };
    AttackBoxDef attack;
    attack.type = type;
    attack.x = take();
    attack.y = take();
    attack.w = take();
    attack.h = take();
    attack.damage = take();
    if (blast) {
        attack.fallForce = args.size() >= kBlastArgsWithForce ? take(1) : 1;
    } else {
        attack.fallForce = take();
    }
    attack.penetration = take();
    attack.noFlash = take();
    attack.pauseTime = take();
    attack.zDepth = std::max(take(), 0);
    attack.landingMode = blast ? 1 : 0;
    replaceAttack(frame, attack);
    frame.knockdown = blast || attack.fallForce > 0;
    frame.dropVx = blast ? kBlastDropVx : 0;
    frame.dropVy = frame.knockdown ? kDropVy : 0;
}

template <std::int32_t Type>
void setAttack(ModelParser& parser, Args args) {
    readAttack(parser, args, Type, Type == kAttackBlast);
}

void setFall(ModelParser& parser, Args args) {
    parser.frame.attack.fallForce = parseIntOr(args[0], 0);
    parser.frame.knockdown = parser.frame.attack.fallForce != 0;
}

void setDrop(ModelParser& parser, Args args) {
    const std::int32_t speed = parseIntOr(args[0], 3);
    parser.frame.dropVy = speed < 0 ? speed : -speed;
    setFields<Float<&F::dropVx>>(parser, args.subspan(1));
}

// A box that is given field by field counts once it has an extent.
template <typename Field>
void setBodyField(ModelParser& parser, Args args) {
    setFields<Field>(parser, args);
    FrameDef& frame = parser.frame;
    frame.hasBBox = frame.bbox.w > 0 && frame.bbox.h > 0;
}

template <typename Field>
void setAttackField(ModelParser& parser, Args args) {
    FrameDef& frame = parser.frame;
    frame.attack.type = std::max(frame.attack.type, 1);  // until a line names another
    setFields<Field>(parser, args);
    frame.hasAttack = frame.attack.w > 0 && frame.attack.h > 0;
}

void setAttackType(ModelParser& parser, Args args) {
    setAttackField<AttackTypeName<&Attack::type>>(parser, args);
    std::int32_t& type = parser.frame.attack.type;
    type = std::max(type, 1);
}

struct DrawMethodKeyword {
    std::string_view name;
    KeywordAction action;
};

constexpr DrawMethodKeyword kDrawMethods[] = {
    {"scalex", setAllFields<Float<&Draw::scaleX, 1>>},
    {"scaley", setAllFields<Float<&Draw::scaleY, 1>>},
    {"flipx", setAllFields<Flag<&Draw::flipX>>},
    {"flipy", setAllFields<Flag<&Draw::flipY>>},
    {"shiftx", setAllFields<Float<&Draw::shiftX>>},
    {"alpha", setAllFields<Int<&Draw::alphaMode>>},
    {"remap", setAllFields<Int<&Draw::remap>>},
    {"fillcolor", setAllFields<Color<&Draw::fillColor>>},
    {"tintmode", setAllFields<Int<&Draw::tintMode, 0, Range{0, 6}>>},
    {"tintcolor", setAllFields<Color<&Draw::tintColor>>},
    {"rotate", setAllFields<Degrees<&Draw::rotate>>},
    {"fliprotate", setAllFields<Flag<&Draw::flipRotate>>},
    // One value scales both ways.
    {"scale",
     [](ModelParser& parser, Args args) {
         setAllFields<Each<Float<&Draw::scaleX, 1>, Float<&Draw::scaleY, 1>>>(parser, args);
         if (args.size() > 1) setFields<Float<&Draw::scaleY, 1>>(parser, args.subspan(1));
     }},
};

// The form without names; it writes all of its fields, however short the line is.
constexpr KeywordAction kPositionalDrawMethod =
    setAllFields<Float256<&Draw::scaleX, 256>, Float256<&Draw::scaleY, 256>, Flag<&Draw::flipX>,
                 Flag<&Draw::flipY>, Float256<&Draw::shiftX>, Int<&Draw::alphaMode>,
                 Int<&Draw::remap>, Int<&Draw::fillColor>, Degrees<&Draw::rotate>,
                 Flag<&Draw::flipRotate>>;

void setDrawMethod(ModelParser& parser, Args args) {
    parser.frame.draw.enabled = true;
    if (const auto* const named = findNamed(kDrawMethods, args[0])) {
        named->action(parser, args.subspan(1));
    } else {
        kPositionalDrawMethod(parser, args);
    }
}

// clang-format off
constexpr ModelKeyword kFrameKeywords[] = {
    {{"delay"}, 1, setDelay},
    {{"offset"}, 2, setFields<Int<&F::offsetX>, Int<&F::offsetY>>},
    {{"bbox"}, 1, setBodyBox},
    {{"platform"}, kMinPlatformArgs, setPlatform},
    {{"sound"}, 1, setFields<Text<&F::sound>>},
    {{"move"}, 1, setFields<Float<&F::moveX>>},
    {{"movez"}, 1, setFields<Float<&F::moveZ>>},
    {{"movea"}, 1, setFields<Float<&F::moveA>>},
    {{"seta"}, 1, setFields<Each<Mark<&F::hasSetA>, Float<&F::setA>>>},
    {{"drawmethod"}, 1, setDrawMethod},
    {{"nodrawmethod"}, 0, [](ModelParser& p, Args) { p.frame.draw = {}; }},

    // The first four replace the whole attack box, so a game writes the others behind them.
    {{"attack"}, 1, setAttack<1>},
    {{"blast"}, 1, setAttack<kAttackBlast>},
    {{"burn"}, 1, setAttack<kAttackBurn>},
    {{"shock"}, 1, setAttack<kAttackShock>},
    {{"fall"}, 1, setFall},
    {{"dropv"}, 1, setDrop},
    {{"forcedirection"}, 1, setFields<Int<&Attack::forceDirection, 0, Range{-2, 2}>>},
    {{"pausetime", "attack.reaction.pause.time"}, 1, setFields<Each<Int<&F::pauseTime>, Int<&Attack::pauseTime>>>},
    {{"noflash", "attack.effect.hit.flash.disable"}, 1, setFields<Int<&Attack::noFlash>>},
    {{"blockflash", "attack.effect.block.flash.model"}, 1, setFields<StickyText<&F::blockFlash>>},
    {{"guardcost", "attack.block.cost"}, 1, setFields<Int<&Attack::guardCost>>},
    {{"noblock", "attack.block.penetrate"}, 1, setFields<Int<&Attack::penetration>>},
    {{"jugglecost"}, 1, setFields<Int<&Attack::juggleCost, 0, kNotNegative>>},
    {{"tag", "attack.tag"}, 1, setFields<Int<&Attack::tag>>},
    {{"damageonlanding"}, 1, setAllFields<Int<&Attack::landingDamage, 0, kNotNegative>, Int<&Attack::landingMode, 0, Range{0, 2}>, AttackTypeName<&Attack::landingType>>},
};

constexpr ModelKeyword kBoxFieldKeywords[] = {
    {{"bbox.position.x"}, 1, setBodyField<Int<&Box::x>>},
    {{"bbox.position.y"}, 1, setBodyField<Int<&Box::y>>},
    {{"bbox.size.x"}, 1, setBodyField<Int<&Box::w>>},
    {{"bbox.size.y"}, 1, setBodyField<Int<&Box::h>>},
    {{"attack.position.x"}, 1, setAttackField<Int<&Attack::x>>},
    {{"attack.position.y"}, 1, setAttackField<Int<&Attack::y>>},
    {{"attack.size.x"}, 1, setAttackField<Int<&Attack::w>>},
    {{"attack.size.y"}, 1, setAttackField<Int<&Attack::h>>},
    {{"attack.size.z.1"}, 1, setAttackField<Int<&Attack::zDepth, 0, kNotNegative>>},
    {{"attack.damage.force"}, 1, setAttackField<Int<&Attack::damage>>},
    {{"attack.damage.type"}, 1, setAttackType},
    {{"attack.reaction.fall.force"}, 1, setFall},
};
// clang-format on

}  // namespace

std::span<const ModelKeyword> boxFieldKeywords() {
    return kBoxFieldKeywords;
}

std::string_view boxOfField(std::string_view key) {
    const bool known = std::any_of(std::begin(kBoxFieldKeywords), std::end(kBoxFieldKeywords),
                                   [&](const ModelKeyword& row) { return row.names[0] == key; });
    return known ? key.substr(0, key.find('.')) : std::string_view{};
}

std::span<const ModelKeyword> frameKeywords() {
    return kFrameKeywords;
}

void readNumberedAttack(ModelParser& parser, std::string_view digits, KeywordArgs args) {
    readAttack(parser, args, std::max(parseIntOr(digits, 1), 1), false);
}

}  // namespace tindrel
