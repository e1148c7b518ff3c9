// What the registry promises beside what the runtime reads: a command may be called supported only
// if the runtime reads the fields that it sets.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/CommandRegistry.hpp"
#include "analysis/OccurrenceRefiner.hpp"
#include "generator/SharedFields.hpp"
#include "reader/ModelKeywords.hpp"
#include "reader/ModelReader.hpp"
#include "reader/StageReader.hpp"

namespace tindrel {
namespace {

namespace fs = std::filesystem;

// Fields that no source of the runtime reads, and why their commands stand as they do.
constexpr std::string_view kFixed = "the verdict on its command is fixed";
const std::map<std::string, std::string_view> kUnread = {
    {"endLevel", "a bare \"end\" promises a mark in the tables and no more"},
    {"fallForce", "the frame's knockdown, which follows from it, is read"},
    {"fastAttack", kFixed},
    {"grabBack", kFixed},
    {"grabFinish", kFixed},
    {"landDust", "landDustModel, the same argument as a name, is read"},
    {"makeInv", kFixed},
    {"noTime", "1 is what a stage without a countdown does"},
    {"pBombDelay", "projectileOffsetY, set with it, is read"},
    {"pBombFrame", "tossFrame, set with it, is read"},
    {"playShotNo", kFixed},
    {"riseAttackTime", "only a line with one number is raised"},
    {"riseInvNoBlink", "nothing blinks, and only a line that asks for that is raised"},
    {"setTime", "0 is what a stage without a countdown does"},
    {"subjectToObstacle", "0 is what a stage without obstacles does"},
    {"throwFrameWait", kFixed},
    {"typeName", "\"type\" is judged as the property of a model"},
    {"zDepth", kFixed},
};

// All identifiers of the runtime behind '.', "->" or "::", its schema excepted.
std::set<std::string> namesReadByTheRuntime() {
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(RUNTIME_SOURCES)) {
        const fs::path extension = entry.path().extension();
        if (extension != ".cpp" && extension != ".hpp" && extension != ".def") continue;
        if (entry.path().parent_path().filename() == "generated") continue;
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(in), {}};
        for (std::size_t i = 1; i < text.size(); ++i) {
            if (text[i - 1] != '.' && text[i - 1] != '>' && text[i - 1] != ':') continue;
            std::size_t end = i;
            while (end < text.size() && std::isalnum(static_cast<unsigned char>(text[end])) != 0) {
                ++end;
            }
            names.insert(text.substr(i, end - i));
        }
    }
    return names;
}

// Gathers the names of the fields in which two records differ.
struct Differences {
    template <class T>
    void operator()(const char* name, const T& before, const T& after) {
        if (before != after) names.insert(name);
    }
    template <class List, class Visit>
    void list(const char* name, const List& before, const List& after, Visit visit) {
        if (before.size() != after.size()) names.insert(name);
        for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
            visit(before[i], after[i]);
        }
    }
    std::set<std::string> names;
};

#define COMPARE_LIST(name, visitElement)                                                           \
    differences.list(#name, before.name, after.name, [&](const auto& element, const auto& other) { \
        visitElement(differences, element, other);                                                 \
    })

void compare(Differences& differences, const ModelDef& before, const ModelDef& after) {
    test::visitCharacter(differences, before, after);
    differences.list("animations", before.animations, after.animations,
                     [&](const AnimationDef& animation, const AnimationDef& other) {
                         test::visitAnimation(differences, animation, other);
                         differences.list("frames", animation.frames, other.frames,
                                          [&](const FrameDef& frame, const FrameDef& changed) {
                                              test::visitFrame(differences, frame, changed);
                                          });
                     });
}

void compare(Differences& differences, const StageDef& before, const StageDef& after) {
    test::visitStage(differences, before, after);
    COMPARE_LIST(layers, test::visitLayer);
    COMPARE_LIST(spawns, test::visitSpawn);
    COMPARE_LIST(events, test::visitStageEvent);
}

ModelDef modelWith(const std::string& line) {
    return parseModel(TextFile("name m\nanim idle\nattack 1 1 9 9 5\n" + line + "\nframe a.gif\n"),
                      "m");
}

StageDef stageWith(const std::string& line) {
    return parseStage(TextFile("background a.gif\npanel a.gif\nspawn m\n" + line +
                               "\ncoords 1 2\nat 5\nspawn n\nat 9\n"));
}

// The fields that some line of the command sets.
std::set<std::string> fieldsOf(std::string_view command) {
    static const ModelDef plainModel = modelWith("");
    static const StageDef plainStage = stageWith("");
    Differences differences;
    for (const char* arguments :
         {"7 6 5 4 3 2 1 9 8", "0 0 0 0 0 0", "1 1 1 1", "word word word", "enemy 1 1", "on", ""}) {
        const std::string line = std::string(command) + ' ' + arguments;
        compare(differences, plainModel, modelWith(line));
        compare(differences, plainStage, stageWith(line));
    }
    return std::move(differences.names);
}

TEST(RuntimeFields, WhatIsCalledSupportedIsRead) {
    const std::set<std::string> read = namesReadByTheRuntime();
    ASSERT_TRUE(read.contains("animationCount")) << "no sources below " RUNTIME_SOURCES;
    std::size_t commands = 0;
    std::set<std::string> unread;
    for (const std::string_view command : registryWords()) {
        const bool mayBeSupported = lookupCommand(command).status == CompatStatus::kSupported ||
                                    !OccurrenceRefiner::rulesOf(command).empty();
        if (!mayBeSupported) continue;
        const std::set<std::string> fields = fieldsOf(command);
        if (!fields.empty()) ++commands;
        for (const std::string& field : fields) {
            if (read.contains(field)) continue;
            unread.insert(field);
            EXPECT_TRUE(kUnread.contains(field)) << command << " sets " << field;
        }
    }
    EXPECT_GT(commands, 100U);
    for (const auto& [field, reason] : kUnread) {
        EXPECT_TRUE(unread.contains(field)) << field << " is read by now: " << reason;
    }
}

// The fixed list of judged commands has no row for these, by how they begin.
constexpr std::string_view kUnjudged[] = {"child_follow_range_",
                                          "child_follow_recall_",
                                          "projectile_velocity_",
                                          "attack.damage.",
                                          "attack.position.",
                                          "attack.size.",
                                          "attack.reaction.fall.force",
                                          "bbox.",
                                          "tag"};

TEST(RuntimeFields, WhatModelsMayHoldIsJudged) {
    for (const auto& keywords :
         {propertyKeywords(), animationKeywords(), frameKeywords(), boxFieldKeywords()}) {
        EXPECT_FALSE(keywords.empty());
        for (const ModelKeyword& keyword : keywords) {
            for (const std::string_view name : keyword.names) {
                const bool isJudged = lookupCommand(name).status != CompatStatus::kUnknown;
                const bool isExempt = std::ranges::any_of(
                    kUnjudged, [&](std::string_view start) { return name.starts_with(start); });
                EXPECT_TRUE(name.empty() || isJudged != isExempt) << name;
            }
        }
    }
}

}  // namespace
}  // namespace tindrel
