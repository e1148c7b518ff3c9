#include "analysis/HtmlReport.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "TempFolder.hpp"
#include "analysis/HtmlText.hpp"

namespace tindrel {
namespace {

// A game of a few files, and its page.
class HtmlReportTest : public testing::Test {
  protected:
    void write(const std::string& file, std::string_view text) {
        folder_.write("game/data/" + file, text);
    }

    std::string page(PageLinks links = PageLinks::kPortAssets, const std::string& out = "out") {
        const ProjectScan project = scanProject(folder_.path() / "game");
        GameReader game(project.dataDir, project.root);
        const ProjectAnalysis analysis = analyzeProject(project, game);
        std::filesystem::create_directories(folder_.path() / out);
        writeHtmlReport(project, analysis, game, folder_.path() / out, links, "Tea & Co");
        return folder_.read(out + "/index.html");
    }

    static std::size_t count(std::string_view text, std::string_view piece) {
        std::size_t found = 0;
        for (std::size_t at = text.find(piece); at != std::string_view::npos;
             at = text.find(piece, at + 1)) {
            ++found;
        }
        return found;
    }

    // The part of a page from the section `id` to the next one.
    static std::string section(const std::string& page, const std::string& id) {
        const std::size_t start = page.find("<section id=\"" + id + "\"");
        if (start == std::string::npos) return {};
        return page.substr(start, page.find("</section>", start) - start);
    }

    test::TempFolder folder_;
};

TEST_F(HtmlReportTest, ObstaclesBySeverityThenByUse) {
    write("a.cfg",
          "frame a\nnoreflect 1\nnoreflect 1\nnoreflect 1\nwobble\ncradits 3\ncradits 3\nwibble\n");
    write("b.cfg", "noreflect 1\n");
    const std::string html = page();
    EXPECT_NE(html.find("11% of the 9 lines that were judged run as written; 4 are not known and 4 "
                        "run in part."),
              std::string::npos);
    const std::string commands = section(html, "commands");
    std::vector<std::size_t> places;
    for (const char* word : {">cradits<", ">wibble<", ">wobble<", ">noreflect<"}) {
        places.push_back(commands.find(word));
    }
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end()));
    EXPECT_NE(places.back(), std::string::npos);
    EXPECT_NE(commands.find("Did you mean <code>credits</code>?"), std::string::npos);
    EXPECT_EQ(count(commands, "Did you mean"), 1U);
    EXPECT_NE(commands.find("a.cfg</code></a><span class=\"at\">lines 2, 3, 4</span>"),
              std::string::npos);
    EXPECT_EQ(count(commands, "Projectile reflection opt-out"), 1U);
}

TEST_F(HtmlReportTest, AnObstacleSaysWhoMeetsIt) {
    write("models.txt", "load Ann data/chars/ann.txt\nload Bob data/chars/bob.txt\n");
    write("chars/ann.txt", "name Ann\nwobble\nanim idle\nframe a.gif\n");
    write("chars/bob.txt", "name Bob\nwobble\nanim idle\nframe a.gif\n");
    write("levels.txt", "set Easy\nfile data/levels/one.txt\nfile data/levels/two.txt\n");
    write("levels/one.txt", "wobble\nwibble\n");
    write("levels/two.txt", "direction both\n");
    write("a.cfg", "wobble\n");
    const std::string commands = section(page(), "commands");
    for (const char* sentence :
         {"<p>2 characters, 1 stage and 1 other file have <code>wobble</code> lines that are not "
          "known.</p>",
          "<p>1 stage has one <code>wibble</code> line that is not known.</p>"}) {
        EXPECT_NE(commands.find(sentence), std::string::npos) << commands;
    }
}

TEST_F(HtmlReportTest, NothingFromTheGameIsTakenForMarkup) {
    write("x&y.cfg", "<script>alert(1)</script>\nquote\"s'\n\x01tick\n");
    write("levels.txt", "set <b>Set</b>\nfile data/levels/<i>.txt\n");
    write("models.txt", "load Hero data/chars/hero.txt\n");
    write("chars/hero.txt", "name Hero\ntype <u>\nanim idle\nframe data/chars/<img>.gif\n");
    const std::string html = page();
    for (const char* piece : {"<script", "<b>Set", "<i>.txt", "<u>", "<img>", "\x01"}) {
        EXPECT_EQ(html.find(piece), std::string::npos) << piece;
    }
    EXPECT_NE(html.find("&lt;script&gt;alert(1)&lt;/script&gt;"), std::string::npos);
    EXPECT_NE(html.find("quote&quot;s&#39;"), std::string::npos);
    EXPECT_NE(html.find("href=\"../assets/openbor-data/x%26y.cfg\""), std::string::npos);
}

TEST_F(HtmlReportTest, GalleryLinksToTheSpellingOnDisk) {
    write("models.txt", "load Hero data/chars/HERO.txt\nload Ghost data/chars/ghost.txt\n");
    write("Chars/hero.txt",
          "name Hero\ntype player\nanim walk\nframe data/chars/w.gif\n"
          "anim IDLE\nframe none\nframe DATA\\chars\\stand+1%.PNG\n");
    write("Chars/Stand+1%.png", "no picture");
    write("Chars/w.gif", "no picture");
    write("Chars/ghost.txt", "name Ghost\nanim idle\nframe data/chars/gone\n");
    write("levels.txt", "set A\nfile data/levels/one.txt\n");
    write("levels/one.txt", "background data/bgs/gone.gif\npanel data/bgs/Panel\n");
    write("bgs/panel.gif", "");
    const std::string html = page();
    const std::string characters = section(html, "characters");
    EXPECT_NE(characters.find("src=\"../assets/openbor-data/Chars/Stand%2B1%25.png\""),
              std::string::npos);
    EXPECT_EQ(characters.find("w.gif"), std::string::npos);
    EXPECT_EQ(count(characters, "no picture found"), 1U);
    EXPECT_NE(section(html, "stages").find("src=\"../assets/openbor-data/bgs/panel.gif\""),
              std::string::npos);

    const std::string elsewhere = page(PageLinks::kDataFolder);
    EXPECT_NE(elsewhere.find("src=\"../game/data/Chars/Stand%2B1%25.png\""), std::string::npos);
    EXPECT_EQ(elsewhere.find("openbor-data"), std::string::npos);
    EXPECT_EQ(elsewhere.find("file:"), std::string::npos);
    EXPECT_EQ(page(PageLinks::kNone).find("Stand%2B1%25.png"), std::string::npos);
}

TEST_F(HtmlReportTest, MissingFilesWithTheirFirstPlace) {
    write("models.txt", "load Hero data/chars/hero.txt\nknow Lost data/chars/lost.txt\n");
    write("chars/hero.txt",
          "name Hero\ndiesound data/sounds/die.wav\nanim idle\nsound data/sounds/hit\n"
          "frame data/chars/HERE.gif\nframe data/chars/two.png\nframe data/chars/gone.gif\n"
          "frame data\\chars\\gone.gif\nframe data/chars/other.png\nframe none\n"
          "dust data/nodust hero\nhitflash Spark\nframe none\nanimationscript first.c\n@cmd f\n"
          "animationscript Data\\Scripts\\LOST.c\n@cmd f\nthinkscript "
          "data/scripts/moved.c\nonspawnscript data/scripts/lost.c\n"
          "didhitscript data/scripts/twice.c\nonfallscript ../moved.c\n");
    for (const char* script : {"elsewhere/Moved.c", "a/twice.c", "b/twice.c"}) write(script, "");
    write("chars/here.gif", "");
    write("chars/other.gif", "");  // stands in for other.png
    write("chars/two.gif", "");    // two stand-ins: neither counts
    write("chars/two.bmp", "");
    write("sounds/hit.wav", "");
    write("levels.txt", "set A\nfile data/levels/one.txt\nfile data/levels/none.txt\n");
    write("levels/one.txt",
          "music data/music/Tune.ogg\nspawn hero\ncoords 1 1\nat 0\n"
          "spawn lost\ncoords 1 1\nat 0\nspawn Nobody\ncoords 1 1\n"
          "spawnscript data/scripts/enter.c\nat 0\nlevelscript data/scripts/start.c\n");
    const std::string missing = section(page(), "missing");
    const std::vector<std::string> expected = {
        "<code>data/<wbr>chars/<wbr>lost.txt</code><span class=\"at\"><a "
        "href=\"../assets/openbor-data/models.txt\"><code>data/<wbr>models.txt</code></a>:2<",
        "<code>Nobody</code><span class=\"at\"><a "
        "href=\"../assets/openbor-data/levels/one.txt\"><code>data/<wbr>levels/<wbr>one.txt</"
        "code></a>:8<",
        "nodust</code>",
        "<code>Spark</code>",
        "none.txt</code>",
        "LOST.c</code>",
        "scripts/<wbr>twice.c</code>",
        "../<wbr>moved.c</code>",
        "scripts/<wbr>start.c</code>",
        "scripts/<wbr>enter.c</code>",
        "<code>first.c</code>",
        "gone.gif</code>",
        "two.png</code>",
        "die.wav</code>",
        "Tune.ogg</code>",
    };
    std::size_t at = 0;
    for (const std::string& piece : expected) {
        const std::size_t place = missing.find(piece);
        ASSERT_NE(place, std::string::npos) << piece << "\n" << missing;
        EXPECT_GT(place, at) << piece;
        at = place;
    }
    for (const char* piece :
         {"HERE", "scripts/<wbr>moved.c", "other.png", "hit.", ">lost<", ">hero<"}) {
        EXPECT_EQ(missing.find(piece), std::string::npos) << piece;
    }
    EXPECT_NE(missing.find("hero.txt</code></a>:6<"), std::string::npos);
    // Spelled in two ways, and counted once.
    EXPECT_EQ(count(missing, "gone.gif</code>") + count(missing, "<h3>Pictures <small>2<"), 2U);
    EXPECT_EQ(count(missing, "<h3>Scripts <small>6<"), 1U);
}

TEST_F(HtmlReportTest, ScriptsAndAnimationCommandsHaveTheirSections) {
    write("scripts/a.c", "void main(){ odd(); }");
    write(
        "chars/a.txt",
        "anim idle\n@script\nodd();\n@end_script\n@cmd setglobalvar \"<x>\" 1\nframe a\n@cmd f\n");
    const std::string html = page();
    const std::string scripts = section(html, "scripts");
    EXPECT_EQ(count(scripts, "<details"), 1U);
    EXPECT_NE(scripts.find(">odd<"), std::string::npos);
    EXPECT_NE(scripts.find("line 2"), std::string::npos);
    const std::string calls = section(html, "calls");
    EXPECT_NE(calls.find(">verified ScriptVM call, bound to the following frame<"),
              std::string::npos);
    EXPECT_NE(calls.find("<code>setglobalvar &quot;&lt;x&gt;&quot; 1</code>"), std::string::npos);
    EXPECT_LT(calls.find("no following animation frame"), calls.find("verified ScriptVM call"));
}

TEST_F(HtmlReportTest, UnansweredKeysStandByHowOftenTheyAreAskedFor) {
    write("models.txt", "load A a.txt\n");
    write("a.txt", "thinkscript a.c\nanim idle\nframe a\n");
    write("a.c",
          "void main(){\n getentityproperty(1, \"<dim>\");\n getplayerproperty(0, \"mood\");\n"
          " getplayerproperty(1, \"mood\");\n}\n");
    const std::string html = page();
    EXPECT_NE(html.find("<a href=\"#scripts\">Scripts<b>2<"), std::string::npos);
    const std::string scripts = section(html, "scripts");
    const std::size_t mood = scripts.find("getplayerproperty &quot;mood&quot;");
    const std::size_t dim = scripts.find("getentityproperty &quot;&lt;dim&gt;&quot;");
    ASSERT_NE(dim, std::string::npos);
    EXPECT_LT(mood, dim);
    EXPECT_NE(scripts.find("a.c</code></a>, line 2.", dim), std::string::npos);
    EXPECT_NE(scripts.find("a.c</code></a>, line 3.", mood), std::string::npos);
}

TEST_F(HtmlReportTest, ConsequencesStandInSentencesWithTheirPlaces) {
    write("a.txt",
          "animationscript odd.c\nanim idle\n@cmd f 1\nframe a\n@cmd f 2\nframe a\n"
          "animationscript noted.c\n@cmd g 1\nframe a\nanimationscript gone.c\n@cmd h\nframe a\n");
    write("odd.c", "void f(int a){\n  odd(a);\n}\n");
    write("noted.c", "// was noted()\nvoid g(int a){ setglobalvarr(a); }\n/* noted() */\n");
    const std::string html = page();
    const std::string costs = section(html, "consequences");
    EXPECT_NE(costs.find("One call, <code>odd</code>, holds back 2 animation commands."),
              std::string::npos);
    EXPECT_NE(costs.find("odd.c</code></a></span><span class=\"at\">line 2</span>"),
              std::string::npos);
    EXPECT_NE(costs.find("2 calls, <code>noted</code> and <code>setglobalvarr</code>, hold back 1 "
                         "animation command."),
              std::string::npos);
    EXPECT_NE(costs.find("Only comments and texts call <code>noted</code>."), std::string::npos);
    EXPECT_NE(
        costs.find(
            "One helper that is not there, <code>gone.c</code>, holds back 1 animation command."),
        std::string::npos);
    const std::string scripts = section(html, "scripts");
    EXPECT_LT(scripts.find(">setglobalvarr<"), scripts.find("Only in comments and texts"));
    EXPECT_GT(scripts.find(">noted<"), scripts.find("Only in comments and texts"));
    EXPECT_NE(scripts.find("Did you mean <code>setglobalvar</code>?"), std::string::npos);
    EXPECT_NE(scripts.find("line 3, in a comment or text"), std::string::npos);
}

TEST_F(HtmlReportTest, WhatPlayShowedStandsWhereAReportIs) {
    write("levels/one.txt", "at 0\n");
    EXPECT_EQ(section(page(), "play"), "");
    folder_.write("out/playtest.json", R"({
      "summary": {"stagesCleared": 1, "stagesPlayed": 2, "stages": 5, "deaths": 3,
        "scriptErrors": {"think [a.c]: <b>broke</b>": 7}, "unsupported": {"typeof": 12, "rare": 40},
        "missingPictures": {}, "missingSounds": {"data/sounds/x.wav": 1}, "missingSoundsOmitted": 4,
        "modelsNeverMet": ["Ghost"]},
      "stages": [{"stage": "data/levels/one.txt", "result": "cleared", "ticks": 4500, "deaths": 1,
        "spawned": 3, "spawns": 4}, {"stage": "two.txt", "result": "stuck"}, 7]})");
    const std::string play = section(page(), "play");
    for (const char* piece :
         {"A bot cleared 1 of 5 stages.", "<span class=\"chip\">stuck</span>",
          "href=\"../assets/openbor-data/levels/one.txt\"", "1:15 of play, 1 death",
          "3<small>of 4 came", "think [a.c]: &lt;b&gt;broke", "<code>Ghost</code>",
          "and 4 times what the report had no room for"}) {
        EXPECT_NE(play.find(piece), std::string::npos) << piece << '\n' << play;
    }
    EXPECT_LT(play.find(">rare<"), play.find(">typeof<")) << "the most frequent first";
    EXPECT_EQ(play.find("Missing pictures"), std::string::npos);

    for (const std::string& noReport :
         {std::string("{"), std::string("[]"), std::string("{\"summary\": 5, \"stages\": []}"),
          std::string(1'000'000, '['), std::string("\"\xff\""), std::string(9U << 20U, ' ')}) {
        folder_.write("out/playtest.json", noReport);
        EXPECT_EQ(section(page(), "play"), "") << noReport.substr(0, 20);
    }
    folder_.write("out/playtest.json", R"({"summary": {"stages": "x", "unsupported": {"a": -1},
        "modelsNeverMet": [3]}, "stages": []})");
    EXPECT_NE(section(page(), "play").find("A bot cleared 0 of 0 stages."), std::string::npos);
}

TEST_F(HtmlReportTest, AReportOfPlayThatFitsTheGameNoMoreIsSaid) {
    const auto report = [&](const char* stages, const char* models, const char* played) {
        folder_.write("reports/playtest.json",
                      std::string(R"({"summary": {"stagesCleared": 1, "stages": )") + stages +
                          R"(, "modelsNeverMet": [)" + models + R"(]}, "stages": [{"stage": ")" +
                          played + R"(", "models": {"Hero": {}}}]})");
    };
    const auto said = [&] {
        const std::string play = section(page(PageLinks::kPortAssets, "reports"), "play");
        const std::size_t start = play.find("<p class=\"warn\">");
        return start == play.npos ? "" : play.substr(start, play.find("</p>", start) - start);
    };
    const auto age = [&](const std::string& file, int hours) {
        const auto now = std::filesystem::file_time_type::clock::now();
        std::filesystem::last_write_time(folder_.path() / file, now - std::chrono::hours(hours));
    };
    write("models.txt", "load Hero hero.txt\nload Foe foe.txt\n");
    write("hero.txt", "name Hero\nanim idle\nframe a\n");
    write("foe.txt", "name Fiend\nanim idle\nframe a\n");
    write("levels.txt", "set S\nfile one.txt\n");
    write("one.txt", "at 0\n");
    folder_.write("runtime/generated/GeneratedStages.cpp", "");
    for (const char* file : {"models.txt", "hero.txt", "foe.txt", "levels.txt", "one.txt"}) {
        age(std::string("game/data/") + file, 9);
    }
    age("runtime/generated/GeneratedStages.cpp", 9);

    const auto expect = [&](std::string_view piece) {
        const std::string text = said();
        EXPECT_NE(text.find(piece), text.npos) << text;
    };
    report("2", "\"Fiend\"", "data/one.txt");
    expect("another conversion: it knows 2 stages, and the game has 1.");
    report("1", "\"Fiend\"", "data/two.txt");
    expect("another conversion: the game has no stage <code>data/two.txt</code>.");
    report("1", "\"Ghost\"", "data/one.txt");
    expect("another conversion: the game has no model <code>Ghost</code>.");
    report("1", "", "data/one.txt");
    expect("another conversion: it knows no model <code>Fiend</code>.");
    report("1", "\"Fiend\"", "data/one.txt");
    EXPECT_EQ(said(), "");
    age("reports/playtest.json", 5);
    age("runtime/generated/GeneratedStages.cpp", 4);
    expect("older than the port: its tables have changed since.");
    age("game/data/hero.txt", 3);
    age("game/data/one.txt", 2);
    expect("2 files have changed since, the last of them <code>data");
    expect("one.txt</code>.");
}

TEST_F(HtmlReportTest, FilesThatTheGameNeverLoadsStandApart) {
    write("models.txt", "load A a.txt\n");
    write("a.txt", "onspawnscript data/s/a.c\nanim idle\nframe none\nwobble 1\n");
    write("draft.txt", "anim idle\nframe none\nwobble 1\nwobble 2\nwibble\n");
    write("levels.txt", "set S\nfile one.txt\nscene sc.txt\n");
    write("one.txt", "bglayer gone.gif 1\n");
    write("s/a.c", "#include \"b.h\"\nvoid main(){ }\n");
    write("s/b.h", "void f(){ odd(); }\n");
    write("s/c.c", "void main(){ odd(); }\n");
    const std::string html = page();
    EXPECT_NE(html.find("<title>Tea &amp; Co - compatibility</title>"), std::string::npos);
    EXPECT_NE(html.find("1 is not known and 5 run in part. Apart from these, 2 files with 6 lines "
                        "are never loaded: 3 are not known and 1 runs in part."),
              std::string::npos)
        << html.substr(html.find("class=\"verdict\""), 500);
    const std::string commands = section(html, "commands");
    EXPECT_LT(commands.find(">wobble<"), commands.find(">bglayer<"));
    EXPECT_LT(commands.find(">bglayer<"), commands.find(">wibble<"));
    EXPECT_NE(commands.find("draft.txt</code></a> <span class=\"chip skip\">not loaded</span>"),
              std::string::npos);
    EXPECT_EQ(count(section(html, "unloaded"), "<li "), 2U);
    // The reason of the line stands with it.
    EXPECT_NE(commands.find("line 1: <code>gone.gif</code> is not there"), std::string::npos);
}

TEST_F(HtmlReportTest, ListsAreBoundedAndSayWhatTheyLeaveOut) {
    std::string text;
    std::string frames = "anim idle\n";
    for (int i = 0; i < 400; ++i) {
        text += "oddword" + std::to_string(i) + "\n";
        frames += "frame data/gone" + std::to_string(i) + ".gif\n";
    }
    for (int i = 0; i < 100; ++i) text += "same\n";
    write("a.cfg", text);
    write("models.txt", "load A data/a.txt\n");
    write("a.txt", frames);
    const std::string html = page();
    EXPECT_NE(html.find("and 101 more commands"), std::string::npos);
    EXPECT_NE(html.find(" and 76 more</span>"), std::string::npos);
    EXPECT_NE(html.find("and 200 more names"), std::string::npos);
}

TEST_F(HtmlReportTest, EmptyAndAbsentGames) {
    EXPECT_NE(page().find("There is no command in this folder to judge."), std::string::npos);
    write("a.cfg", "frame a\n");
    const std::string html = page();
    EXPECT_NE(html.find("Every one of 1 line that was judged runs as written."), std::string::npos);
    EXPECT_NE(html.find("Nothing: every command is carried out in full."), std::string::npos);
}

TEST(HtmlText, Numbers) {
    EXPECT_EQ(groupDigits(0), "0");
    EXPECT_EQ(groupDigits(999), "999");
    EXPECT_EQ(groupDigits(1000), "1,000");
    EXPECT_EQ(groupDigits(1234567), "1,234,567");
    EXPECT_EQ(counted(1, "line", "lines"), "1 line");
}

}  // namespace
}  // namespace tindrel
