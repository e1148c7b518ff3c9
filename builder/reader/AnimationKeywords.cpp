#include <cmath>
#include <utility>

#include "reader/ModelKeywords.hpp"

namespace tindrel {
namespace {

using namespace field;
using Args = KeywordArgs;
using A = AnimationDef;

void addFrame(ModelParser& parser, Args args) {
    FrameDef& frame = parser.frames.emplace_back(parser.frame);
    frame.sprite = args[0];
    frame.animationCommand = std::exchange(parser.pendingCommand, {});
    parser.frame.sound.clear();
}

void addAnimationCommand(ModelParser& parser, Args args) {
    std::string& text = parser.pendingCommand;
    if (!text.empty()) text += '\n';
    text += callOf(args, isWholeCall(args) && parser.mends(Mend::kWholeCall));
}

void setChargeTime(ModelParser& parser, Args args) {
    constexpr double kMax = std::numeric_limits<std::int32_t>::max();
    const double hundredths = std::round(parseFloatOr(args[0], 0) * 100.0F);
    parser.animation().chargeTime = static_cast<std::int32_t>(std::clamp(hundredths, 0.0, kMax));
}

void setCounterRange(ModelParser& parser, Args args) {
    A& animation = parser.animation();
    animation.counterStart = std::max(parseIntOr(args[0], 0), 0);
    animation.counterEnd =
        std::max(parseIntOr(args[1], animation.counterStart), animation.counterStart);
    setFields<Int<&A::counterCond, 0, kNotNegative>, Flag<&A::counterTakesDamage, 1>>(
        parser, args.subspan(2));
}

template <auto Defined, auto Min, auto Max, std::int32_t MinFallback, std::int32_t MaxFallback>
void setRange(ModelParser& parser, Args args) {
    setFields<Each<Mark<Defined>, Float<Min, MinFallback>>, Float<Max, MaxFallback>>(parser, args);
    if (of(parser, Min) > of(parser, Max)) std::swap(of(parser, Min), of(parser, Max));
}

void addCancel(ModelParser& parser, Args args) {
    const std::size_t last = args.size() - 1;
    CancelDef& cancel = parser.animation().cancels.emplace_back();
    cancel.startFrame = std::max(parseIntOr(args[0], 0), 0);
    cancel.endFrame = std::max(parseIntOr(args[1], cancel.startFrame), cancel.startFrame);
    cancel.hits = std::max(parseIntOr(args[2], 0), 0);
    cancel.command = joinTokens(args, 3, last);
    cancel.targetAnimation = args[last];
}

template <bool Summon>
void setSpawnFrame(ModelParser& parser, Args args) {
    parser.animation().summonFrame = Summon;
    setFields<Int<&A::spawnFrame, 0, kNotNegative>, Float<&A::spawnOffsetX>,
              Float<&A::spawnOffsetZ>, Float<&A::spawnOffsetA>, Flag<&A::spawnScreenRelative>>(
        parser, args);
}

// clang-format off
constexpr ModelKeyword kAnimationKeywords[] = {
    {{"frame"}, 1, addFrame},
    {{"@cmd"}, 1, addAnimationCommand},

    // Playing.
    {{"loop"}, 1, setFields<Flag<&A::loop>, Int<&A::loopStart, 0, kNotNegative>, Int<&A::loopEnd, -1>>},
    {{"flipframe"}, 0, setAllFields<Int<&A::flipFrame>>},
    {{"landframe"}, 1, setFields<Int<&A::landFrame, -1>, Each<Int<&A::landDust>, Text<&A::landDustModel>>>},
    {{"jumpframe"}, 1, setFields<Int<&A::jumpFrame, -1>, Float<&A::jumpVelocityY>, Float<&A::jumpVelocityX>, Float<&A::jumpVelocityZ>>},
    {{"dropframe"}, 1, setFields<Int<&A::dropFrame, -1, Range{-1}>>},
    {{"followanim"}, 1, setFields<Int<&A::followAnim, 0, kNotNegative>>},
    {{"followcond"}, 1, setFields<Int<&A::followCond, 0, kNotNegative>>},
    {{"cancel"}, 5, addCancel},
    {{"quakeframe"}, 1, setFields<Int<&A::quakeFrame, -1>, Int<&A::quakeLoops, 0, kNotNegative>, Int<&A::quakeIntensity, 0, kNotNegative>>},

    // Choosing and paying.
    {{"energycost", "mpcost"}, 1, setAllFields<Int<&A::energyCost, 0, kNotNegative>, Int<&A::energyMode, 0, Range{0, 2}>, Int<&A::energyDisable>>},
    {{"mponly"}, 1, setFields<Int<&A::energyMode, 0, Range{0, 2}>>},
    {{"chargetime"}, 1, setChargeTime},
    {{"range"}, 2, setRange<&A::hasRangeX, &A::rangeXMin, &A::rangeXMax, 0, 75>},
    {{"rangez"}, 2, setRange<&A::hasRangeZ, &A::rangeZMin, &A::rangeZMax, 0, 0>},
    {{"rangea"}, 2, setRange<&A::hasRangeA, &A::rangeAMin, &A::rangeAMax, -1000, 1000>},

    // Hitting and countering.
    {{"attackone"}, 1, setFields<Flag<&A::attackOne>>},
    {{"counterframe"}, 3, setFields<Each<Int<&A::counterStart, 0, kNotNegative>, Int<&A::counterEnd, 0, kNotNegative>>, Int<&A::counterCond, 0, kNotNegative>, Flag<&A::counterTakesDamage, 1>>},
    {{"counterrange"}, 4, setCounterRange},
    {{"hitfx"}, 1, setFields<Path<&A::hitFx>>},
    {{"hitflash", "attack.effect.hit.flash.model"}, 1, setFields<Each<Text<&A::hitFlash>, StickyText<&FrameDef::hitFlash>>>},

    // Projectiles, weapons and children.
    {{"throwframe", "shootframe", "pshotframe"}, 1, setFields<Int<&A::throwFrame, -1>, Int<&A::projectileOffsetY, 70>>},
    {{"tossframe"}, 1, setFields<Int<&A::tossFrame, -1>, Int<&A::projectileOffsetY, 70>>},
    {{"pbombframe"}, 1, setAllFields<Each<Int<&A::pBombFrame, -1, Range{-1}>, Int<&A::tossFrame, -1, Range{-1}>>, Each<Int<&A::pBombDelay, 70>, Int<&A::projectileOffsetY, 70>>>},
    {{"projectile_velocity_x"}, 1, setFields<Float<&A::projectileVelocityX, 2>>},
    {{"projectile_velocity_y"}, 1, setFields<Float<&A::projectileVelocityY>>},
    {{"projectile_velocity_z"}, 1, setFields<Float<&A::projectileVelocityZ>>},
    {{"custknife"}, 1, setFields<Text<&A::custKnife>>},
    {{"custbomb", "custpbomb"}, 1, setFields<Text<&A::custBomb>>},
    {{"weaponframe"}, 1, setFields<Int<&A::weaponFrame, -1>, Int<&A::weaponIndex>>},
    {{"custentity"}, 1, setFields<Text<&A::custEntity>>},
    {{"spawnframe"}, 1, setSpawnFrame<false>},
    {{"summonframe"}, 1, setSpawnFrame<true>},
    {{"unsummonframe"}, 1, setFields<Int<&A::unsummonFrame, 0, kNotNegative>>},
};
// clang-format on

}  // namespace

bool isWholeCall(KeywordArgs tokens) {
    if (tokens.size() != 1) return false;
    std::string_view call = tokens[0];
    if (call.ends_with(';')) call.remove_suffix(1);
    std::size_t i = 0;
    const auto isLetter = [](char c) {
        return c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    };
    while (i < call.size() && (isLetter(call[i]) || (i > 0 && isDigit(call[i])))) ++i;
    if (i == 0 || i == call.size() || call[i] != '(') return false;
    char quote = 0;
    for (int depth = 0; i < call.size(); ++i) {
        const char c = call[i];
        if (quote != 0) {
            if (c == '\\') ++i;
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')' && --depth == 0) {
            return i + 1 == call.size();
        }
    }
    return false;
}

std::string callOf(KeywordArgs tokens, bool whole) {
    std::string call(tokens[0]);
    if (whole) return call.ends_with(';') ? call : call + ';';
    call += '(';
    for (std::size_t i = 1; i < tokens.size(); ++i) {
        if (i > 1) call += ',';
        call += tokens[i];
    }
    call += ");";
    return call;
}

std::span<const ModelKeyword> animationKeywords() {
    return kAnimationKeywords;
}

}  // namespace tindrel
