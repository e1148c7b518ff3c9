#include <gtest/gtest.h>

#include "FakeTools.hpp"
#include "platform/Dialogs.hpp"

namespace tindrel {
namespace {
namespace fs = std::filesystem;

// A dialog program that writes down its arguments, one a line, says what `says` holds and ends with
// the code in `code`.
constexpr const char* kScript = R"(#!/bin/sh
here="${0%/*}"
printf '%s\n' "$@" > "$here/log"
while read -r line; do echo "$line"; done < "$here/says"
read -r code < "$here/code"
exit "$code"
)";

class DialogProgramsTest : public testing::Test {
  protected:
    void answer(const std::string& says, int code) {
        tools_.write("says", says);
        tools_.write("code", std::to_string(code) + '\n');
    }

    test::Environment display_{"DISPLAY", ":99"};
    test::FakeTools tools_;
};

TEST_F(DialogProgramsTest, NeedADisplayAndAProgram) {
    EXPECT_FALSE(systemDialogs().has_value());
    tools_.addProgram("kdialog", kScript);
    EXPECT_TRUE(systemDialogs().has_value());
    const test::Environment noDisplay("DISPLAY", "");
    const test::Environment noWayland("WAYLAND_DISPLAY", "");
    EXPECT_FALSE(systemDialogs().has_value());
}

TEST_F(DialogProgramsTest, ZenityAnswersByCodeAndOutput) {
    tools_.addProgram("zenity", kScript);
    tools_.addProgram("kdialog", kScript);
    const Dialogs dialogs = systemDialogs().value();
    answer("", 0);
    EXPECT_EQ(dialogs.askThreeWay("T", "a\\b"), DialogAnswer::kYes);
    EXPECT_EQ(tools_.log(),
              "--question\n--no-markup\n--title=T\n--text=a\\\\b\n--ok-label=SIM\n"
              "--cancel-label=CANCELAR\n--extra-button=NAO\n");
    EXPECT_TRUE(dialogs.askYesNo("T", "?", DialogStyle::kWarning));
    answer("NAO\n", 1);
    EXPECT_EQ(dialogs.askThreeWay("T", "?"), DialogAnswer::kNo);
    answer("", 1);
    EXPECT_EQ(dialogs.askThreeWay("T", "?"), DialogAnswer::kCancel);
    EXPECT_FALSE(dialogs.askYesNo("T", "?", DialogStyle::kQuestion));
    EXPECT_EQ(dialogs.pickFolder("T"), fs::path());

    answer("/games/my game.pak\n", 0);
    const FileFilter filters[] = {{"All", "*.zip;*.pak"}, {"ZIP", "*.zip"}};
    EXPECT_EQ(dialogs.pickFile("T", filters), fs::path("/games/my game.pak"));
    EXPECT_EQ(tools_.log(),
              "--file-selection\n--title=T\n--file-filter=All | *.zip *.ZIP *.pak *.PAK\n"
              "--file-filter=ZIP | *.zip *.ZIP\n");
    EXPECT_EQ(dialogs.pickFolder("T"), fs::path("/games/my game.pak"));
}

TEST_F(DialogProgramsTest, KdialogAnswersByCode) {
    tools_.addProgram("kdialog", kScript);
    const Dialogs dialogs = systemDialogs().value();
    const DialogAnswer answers[] = {DialogAnswer::kYes, DialogAnswer::kNo, DialogAnswer::kCancel};
    for (int code = 0; code < 3; ++code) {
        answer("", code);
        EXPECT_EQ(dialogs.askThreeWay("T", "?"), answers[code]) << code;
        EXPECT_EQ(dialogs.askYesNo("T", "?", DialogStyle::kWarning), code == 0);
    }
    EXPECT_EQ(tools_.log(), "--title\nT\n--warningyesno\n?\n");
    const test::Environment home("HOME", "/home/me");
    const FileFilter filters[] = {{"All", "*.zip;*.pak"}, {"ZIP", "*.zip"}};
    answer("/games/a.zip\n", 0);
    EXPECT_EQ(dialogs.pickFile("T", filters), fs::path("/games/a.zip"));
    EXPECT_EQ(tools_.log(),
              "--title\nT\n--getopenfilename\n/home/me\n*.zip *.ZIP *.pak *.PAK|All\n"
              "*.zip *.ZIP|ZIP\n");
}

}  // namespace
}  // namespace tindrel
