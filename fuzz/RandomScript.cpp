#include "RandomScript.hpp"

#include "HostFunctions.hpp"

namespace tindrel::fuzz {
namespace {

constexpr const char* kNumbers[] = {
    "0",          "1",          "-1",         "2",           "3",          "0.5",
    "7",          "20",         "100",        "200",         "-50",        "255",
    "256",        "4096",       "1000000",    "-1000000",    "1e30",       "-1e30",
    "2147483648", "4294967296", "1e308*1e10", "pow(-1,0.5)", "0x10000000", "0x18000000",
    "0x1C000000", "0x20000000"};

constexpr const char* kTexts[] = {"",
                                  "idle",
                                  "walk",
                                  "attack1",
                                  "fall",
                                  "model0",
                                  "model1",
                                  "model2",
                                  "name",
                                  "health",
                                  "x",
                                  "z",
                                  "a",
                                  "position",
                                  "velocity",
                                  "direction",
                                  "map",
                                  "antigravity",
                                  "animation",
                                  "maxhealth",
                                  "exists",
                                  "aiflag",
                                  "drop",
                                  "subject_to_screen",
                                  "guardpoints",
                                  "coords",
                                  "boss",
                                  "item",
                                  "modelptr",
                                  "xpos",
                                  "nojoin",
                                  "ent_count",
                                  "in_level",
                                  "camerax",
                                  "width",
                                  "branch",
                                  "street",
                                  "playkeys",
                                  "disablekeys",
                                  "entity",
                                  "attack",
                                  "anybutton",
                                  "ani_idle",
                                  "type_enemy",
                                  "flag_jump",
                                  "entity_property_hp",
                                  "scalex",
                                  "rotate",
                                  "alpha",
                                  "tintmode",
                                  "reset",
                                  "int",
                                  "bgs/tile.bmp",
                                  "bgs/tile",
                                  "notes.txt",
                                  "../../escape.txt",
                                  "/tmp/escape.txt",
                                  "a/b/c.txt",
                                  "scripts/ok.c",
                                  "absent.wav",
                                  "12",
                                  "-3.5 words",
                                  "inf",
                                  "long text with blanks and more"};

constexpr const char* kVariables[] = {"self", "one", "two", "three", "i"};

std::string argument(Dice& dice) {
    switch (dice.roll(8)) {
        case 0:
        case 1:
            return std::string("\"") + dice.pick(kTexts) + "\"";
        case 2:
        case 3:
            return dice.pick(kNumbers);
        case 4:
            return "getlocalvar(\"self\")";
        case 5:
            return std::to_string(dice.roll(300));
        case 6:
            return dice.once(4) ? "NULL()" : "rand() % 600 - 100";
        default:
            return dice.once(20) ? "array(3)" : dice.pick(kVariables);
    }
}

std::string call(Dice& dice) {
    const auto functions = port::hostFunctions();
    std::string text(functions[dice.roll(static_cast<std::uint32_t>(functions.size()))].name);
    text += '(';
    const std::uint32_t count = dice.roll(dice.once(6) ? 14 : 6);
    for (std::uint32_t i = 0; i < count; ++i) text += (i > 0 ? ", " : "") + argument(dice);
    return text + ")";
}

}  // namespace

std::string randomScript(Dice& dice, int calls) {
    std::string text = "void main() {\nint i;\n";
    for (int done = 0; done < calls; ++done) {
        const std::string line = std::string(dice.pick(kVariables)) + " = " + call(dice) + ";\n";
        if (dice.once(8)) {
            text += "for (i = 0; i < " + std::to_string(dice.roll(200)) + "; i++) { " + call(dice) +
                    "; }\n";
        }
        if (dice.once(6)) text += "if (" + call(dice) + ") ";
        text += line;
    }
    return text + "}\n";
}

}  // namespace tindrel::fuzz
