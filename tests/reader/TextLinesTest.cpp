#include "reader/TextLines.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "TempFolder.hpp"

namespace tindrel {
namespace {

using Strings = std::vector<std::string>;

// "3:frame|a.gif|//" for the line of that number with its word and arguments.
Strings show(const TextFile& file) {
    Strings out;
    for (const TextLine& line : file) {
        std::string text = std::to_string(line.line) + ':' + std::string(line.command());
        for (const std::string_view arg : line.args) text.append("|").append(arg);
        out.push_back(std::move(text));
    }
    return out;
}

Strings show(std::string content) {
    return show(TextFile(std::move(content)));
}

TEST(TextLines, CountsEveryPhysicalLineAndKeepsTheMeaningful) {
    EXPECT_EQ(show("\n"
                   "  // foo\n"
                   "\tframe\t \x0B"
                   "a.gif // foo\r\n"
                   "delay 5 # slow\n"
                   "# all of it\n"
                   "frame data/a#1.gif \"x # y\"\n"
                   "#\r\n"
                   "Name last"),
              (Strings{"3:frame|a.gif|//|foo", "4:delay|5", "6:frame|data/a", "8:Name|last"}));
    EXPECT_EQ(show(""), Strings{});
    EXPECT_EQ(show("\n\n \r\n"), Strings{});
    EXPECT_EQ(TextFile("LoOp 1").lines()[0].key, "loop");
}

TEST(TextLines, OnlyALineFeedEndsALine) {
    EXPECT_EQ(show("name A\rhealth 5\r"), (Strings{"1:name|A|health|5"}));
    EXPECT_EQ(show(std::string("a\0b 1\0\nc", 8)), (Strings{std::string("1:a\0b|1\0", 8), "2:c"}));
}

TEST(TextLines, RemovesTheByteOrderMarkOfTheFirstLineOnly) {
    EXPECT_EQ(show("\xEF\xBB\xBF"), Strings{});
    EXPECT_EQ(show("\xEF\xBB\xBFname A\n\xEF\xBB\xBFname B"),
              (Strings{"1:name|A", "2:\xEF\xBB\xBFname|B"}));
    // A first line in the legacy code page is decoded, mark and all, before the mark is looked for.
    EXPECT_EQ(show("\xEF\xBB\xBF\xE9"), (Strings{"1:\xC3\xAF\xC2\xBB\xC2\xBF\xC3\xA9"}));
}

TEST(TextLines, DecidesTheEncodingLineByLine) {
    EXPECT_EQ(
        show("caf\xE9\ncaf\xC3\xA9\n\x80\x81\xC3\xA9"),
        (Strings{"1:caf\xC3\xA9", "2:caf\xC3\xA9", "3:\xE2\x82\xAC\xC2\x81\xC3\x83\xC2\xA9"}));
    // Overlong, surrogate, above the last code point, cut short, stray continuation.
    for (const char* bytes :
         {"\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\xBF"}) {
        const Strings lines = show(std::string("x 1\n") + bytes + "\n");
        ASSERT_EQ(lines.size(), 2U);
        EXPECT_GT(lines[1].size(), 2 + std::string(bytes).size()) << "kept as UTF-8: " << lines[1];
    }
}

TEST(TextLines, ScriptBlocksKeepTheirTextRaw) {
    const TextFile file(
        "name A\n"
        "\n"
        "@script # opens\n"
        "  void main() { // kept\n"
        "    // dropped\n"
        "\r\n"
        "#define X 1\r\n"
        "@script @cmd\n"
        "  @END_SCRIPT x\n"
        "@end_script\n"
        "health 5\n");
    EXPECT_EQ(show(file), (Strings{"1:name|A", "3:@script", "9:@END_SCRIPT|x", "10:@end_script",
                                   "11:health|5"}));
    EXPECT_EQ(file.lines()[1].text(), "  void main() { // kept\n#define X 1\n@script @cmd\n");
    EXPECT_EQ(file.lines()[2].text(), "");
}

TEST(TextLines, AnOpenBlockRunsToTheEnd) {
    const TextFile file("@SCRIPT\na\n@script\n@end_script\n@script\n@cmd b (\nc");
    ASSERT_EQ(show(file), (Strings{"1:@SCRIPT", "4:@end_script", "5:@script"}));
    EXPECT_EQ(file.lines()[0].text(), "a\n@script\n");
    EXPECT_EQ(file.lines()[2].text(), "@cmd b (\nc\n");
}

TEST(TextLines, AnimationCommandsSplitOutsideQuotesAndParentheses) {
    struct Case {
        std::string text;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {"@cmd foo \"a b\" (1 + 2) x", "1:@cmd|foo|\"a b\"|(1 + 2)|x"},
        {"@CMD play(\"a // b\", 1) // c", "1:@CMD|play(\"a // b\", 1)|//|c"},
        {"@cmd a (b # c) d # e", "1:@cmd|a|(b # c)|d"},
        {"@cmd 'it\\'s \" # one' two", "1:@cmd|'it\\'s \" # one'|two"},
        {"@cmd \"open \\", "1:@cmd|\"open \\"},
        {"@cmd", "1:@cmd"},
        {"@cmd # nothing", "1:@cmd"},
        // The depth wraps at a stray ')', so neither white space nor '#' splits from there on.
        {"@cmd a ) b # c", "1:@cmd|a|) b # c"},
        {"@cmd a ) b ( c d", "1:@cmd|a|) b (|c|d"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(show(text), Strings{expected}) << text;
    }
}

TEST(TextLines, ViewsSurviveAMoveOfTheFile) {
    TextFile first("A \xE9 c\n@script\nbody\n@end_script\n" + std::string("x ") +
                   std::string(10U << 20U, 'y'));
    const Strings before = show(first);
    std::vector<TextFile> files;
    files.push_back(std::move(first));
    files.emplace_back("other");
    TextFile last;
    last = std::move(files[0]);
    files.clear();
    EXPECT_EQ(show(last), before);
    EXPECT_EQ(last.lines()[0].key, "a");
    EXPECT_EQ(last.lines()[1].text(), "body\n");
    EXPECT_EQ(last.lines()[3].args[0].size(), 10U << 20U);
}

TEST(TextLines, WhatIsNoReadableFileHasNoLines) {
    const test::TempFolder folder;
    EXPECT_EQ(show(readTextLines(folder.write("a.txt", "name A"))), (Strings{"1:name|A"}));
    EXPECT_EQ(show(readTextLines(folder.path() / "absent.txt")), Strings{});
    EXPECT_EQ(show(readTextLines(folder.path())), Strings{});
    const auto large = folder.write("large.txt", "name A");
    std::filesystem::resize_file(large, kMaxTextFileBytes + 1);
    EXPECT_EQ(show(readTextLines(large)), Strings{});
}

}  // namespace
}  // namespace tindrel
