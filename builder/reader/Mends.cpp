#include "reader/Mends.hpp"

#include <array>

namespace tindrel {
namespace {

using enum Mend;

constexpr std::array kMends = {
    MendRow{kBlockEnd, "end of a block", "`} @end_script`, `@end_script // ...`",
            "the text in front belongs to the block, and the word ends it",
            "the block never ends and swallows the rest of the file"},
    MendRow{kZeroAttack, "attack of zeros", "`attack 0 0 0 0`, four zeros or fewer",
            "the attack ends here, as with `attack none`",
            "the line is short and changes nothing, so that the attack stays"},
    MendRow{kBoxField, "field of a box", "`bbox.size.x 20`, `attack.damage.force 5` and their kin",
            "the field that the line of the whole box sets", "the boxes are empty"},
    MendRow{kPlayerSpawn, "start of a player", "`spawn1 50 120`, two numbers",
            "x and z on the ground, as `spawn1 50 120 0`", "the line is short and sets nothing"},
    MendRow{kWholeCall, "whole call", "`@cmd playmusic(\"a.ogg\", 1)`", "the call as it stands",
            "the call becomes the name of a function and breaks off"},
    MendRow{kMacroComment, "comment behind a macro", "`#define X 1 // ...`",
            "the text without the comment", "the comment swallows the line wherever X stands"},
    MendRow{kIncludeComment, "comment behind an include", "`#import \"x.h\" // ...`",
            "the path without the comment", "no such file is found"},
    MendRow{kDeclarators, "list of declarations", "`int a, b = 2, c;`", "declarations in turn",
            "the script breaks off"},
    MendRow{kStep, "step inside an expression", "`while (c-- > 0)`", "the value before the step",
            "the script breaks off"},
    MendRow{kUndefine, "macro that goes", "`#undef X`", "X means itself again", "the macro stays"},
    MendRow{kFunction, "function of the engine",
            "`typeof(v)`, `trunc(v)`, `round(v)`, `executeanimation(...)`; `return (v)`",
            "a call that is answered; `return` is no call", "nothing answers"},
};

// A row's place is its mend.
static_assert([] {
    for (std::size_t i = 0; i < kMends.size(); ++i) {
        if (kMends[i].mend != static_cast<Mend>(i)) return false;
    }
    return kMends.size() == kMendCount;
}());

}  // namespace

std::span<const MendRow> mends() {
    return kMends;
}

const MendRow& rowOf(Mend mend) {
    return kMends[static_cast<std::size_t>(mend)];
}

}  // namespace tindrel
