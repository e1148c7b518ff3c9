#include "reader/Mends.hpp"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "TempFolder.hpp"
#include "reader/GameReader.hpp"
#include "reader/ModelReader.hpp"
#include "reader/StageReader.hpp"

namespace tindrel {
namespace {

// The last frame of the last animation: its boxes, what a hit with it does, command and script.
std::string showModel(const ModelDef& model) {
    const AnimationDef& animation = model.animations.back();
    const FrameDef& frame = animation.frames.back();
    const AttackBoxDef& hit = frame.attack;
    std::ostringstream out;
    out << frame.sprite;
    if (frame.hasBBox) {
        out << " body " << frame.bbox.x << ',' << frame.bbox.y << ',' << frame.bbox.w << ','
            << frame.bbox.h;
    }
    if (frame.hasAttack) {
        out << " hit " << hit.x << ',' << hit.y << ',' << hit.w << ',' << hit.h << ' ' << hit.damage
            << '/' << hit.type << ' ' << hit.zDepth;
    }
    if (frame.knockdown) out << " down";
    if (!frame.animationCommand.empty()) out << ' ' << frame.animationCommand;
    if (!animation.inlineScript.empty()) out << " {" << animation.inlineScript << '}';
    return out.str();
}

std::string showStage(const StageDef& stage) {
    std::ostringstream out;
    out << stage.playerStartX << ' ' << stage.playerStartZ << ' ' << stage.playerStartA << ' '
        << stage.player1SpawnDefined << ' ' << stage.player4SpawnDefined;
    return out.str();
}

struct Shown {
    std::string text;
    std::set<std::pair<Mend, std::uint64_t>> lines;  // that were mended
};

// `text` as a model if it has an animation, else as a stage whose depth begins at 100.
Shown read(const std::string& text, bool asWritten) {
    const TextFile file(text, asWritten);
    Reading reading(asWritten);
    Shown shown;
    if (text.find("anim ") != std::string::npos) {
        shown.text = showModel(parseModel(file, "m", reading));
    } else {
        const DepthLimits depth{.zMin = 100};
        shown.text = showStage(parseStage(file, {}, depth, reading));
    }
    for (const auto& lines : {file.reading().lines(), reading.lines()}) {
        for (const MendedLine& line : lines) shown.lines.emplace(line.mend, line.line);
    }
    return shown;
}

TEST(Mends, ReadWhatIsPlainlyMeantUnlessTakenToTheLetter) {
    const std::string hit = "anim a\nattack 1 2 3 4 5 1\n";
    const struct {
        Mend mend;
        std::string text;
        std::string asWritten, mended;
        std::uint64_t line;
    } rows[] = {
        {Mend::kBlockEnd, "anim a\n@script\nf();\n  } @END_script\nframe x\nanim b\nframe y\n", "",
         "y", 4},
        {Mend::kBlockEnd, "anim a\n@script\nf('\"');}@end_script // on\nframe x", "",
         "x {f('\"');}\n}", 3},
        {Mend::kBlockEnd, "anim a\n@script\nf();\n@end_script// x\nframe x", "", "x {f();\n}", 4},
        {Mend::kZeroAttack, hit + "attack 0 0 0 0\nframe x", "x hit 1,2,3,4 5/1 0 down", "x", 3},
        {Mend::kZeroAttack, hit + "attack3 0 00\nframe x", "x hit 1,2,3,4 5/1 0 down", "x", 3},
        {Mend::kZeroAttack, hit + "shock 0 0 0\nframe x", "x hit 1,2,3,4 5/1 0 down", "x", 3},
        {Mend::kBoxField,
         "anim a\nbbox.position.x 1\nbbox.position.y 2\nbbox.size.x 3\nbbox.size.y 4\nframe x", "x",
         "x body 1,2,3,4", 2},
        {Mend::kBoxField, "anim a\nbbox.position.x 1\nbbox.size.x 3\nframe x", "x", "x", 2},
        {Mend::kBoxField,
         "anim a\nattack.damage.force 9\nattack.size.x 3\nattack.size.y 4\nattack.size.z.1 5\n"
         "attack.position.x 1\nattack.position.y 2\nattack.reaction.fall.force 2\nframe x",
         "x", "x hit 1,2,3,4 9/1 5 down", 2},
        {Mend::kBoxField, hit + "attack.damage.type burn\nframe x", "x hit 1,2,3,4 5/1 0 down",
         "x hit 1,2,3,4 5/1002 0 down", 3},
        {Mend::kPlayerSpawn, "spawn1 10 20\n", "80 200 0 0 0", "10 120 0 1 0", 1},
        {Mend::kPlayerSpawn, "spawn4 10 20\n", "80 200 0 0 0", "80 200 0 0 1", 1},
        {Mend::kWholeCall, "anim a\n@cmd f(\"a)\", g(1))\nframe x", "x f(\"a)\", g(1))();",
         "x f(\"a)\", g(1));", 2},
        {Mend::kWholeCall, "anim a\n@cmd f();\nframe x", "x f();();", "x f();", 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const Shown mended = read(row.text, false);
        EXPECT_EQ(mended.text, row.mended);
        EXPECT_TRUE(mended.lines.contains({row.mend, row.line}));
        // A block that never ends leaves no frame to show.
        if (row.asWritten.empty()) {
            EXPECT_TRUE(parseModel(TextFile(row.text, true), "m").animations[0].frames.empty());
            continue;
        }
        const Shown asWritten = read(row.text, true);
        EXPECT_EQ(asWritten.text, row.asWritten);
        EXPECT_TRUE(asWritten.lines.empty());
    }
}

TEST(Mends, LeaveAloneWhatHasAMeaningToTheLetter) {
    for (const char* text : {
             "anim a\nattack 1 2 3 4 5\nattack 1 2 3\nframe x",
             "anim a\nattack 1 2 3 4 5\nblast 0 0 0 0\nframe x",
             "anim a\nblast 0 0 0 0 0\nframe x",
             "anim a\nattack 1 2 3 4 5\nattack x y\nframe x",
             "anim a\nattack 1 2 3 4 5\nattack 0\nframe x",
             "anim a\nbbox.position.x\nframe x",
             "anim a\n@script\nlog(\"@end_script\"); // @end_script\n@end_scripts\n/* @end_script\n"
             "x @end_script y\n@end_script\nframe x",
             "anim a\n@cmd foo \"a b\" (1 + 2) x\n@cmd f\n@cmd f(1) + g(2)\n@cmd f(1)(2)\nframe x",
             "spawn1 10 20 0\nspawn2 5\n",
         }) {
        const Shown mended = read(text, false);
        EXPECT_EQ(mended.text, read(text, true).text) << text;
        EXPECT_TRUE(mended.lines.empty()) << text;
    }
}

TEST(Mends, AGameTellsEachMendedLineOnce) {
    const test::TempFolder folder;
    folder.write("data/models.txt", "load A a.txt\nload B a.txt\n");
    folder.write("data/a.txt", "anim a\n@script\n} @end_script\nattack 0 0\nframe x\n");
    const auto all = [&](bool asWritten) {
        GameReader game(folder.path() / "data", folder.path(), {}, asWritten);
        static_cast<void>(game.models());
        game.release(folder.path() / "data" / "a.txt");
        static_cast<void>(game.lines(folder.path() / "data" / "a.txt"));
        return game.mendedLines();
    };
    const std::vector<MendedLine> lines = {{3, Mend::kBlockEnd}, {4, Mend::kZeroAttack}};
    EXPECT_EQ(all(false), (std::map<std::string, std::vector<MendedLine>>{{"data/a.txt", lines}}));
    EXPECT_TRUE(all(true).empty());
}

}  // namespace
}  // namespace tindrel
