// The schema of the tables is a text of its own: a port has it without the builder. Member by
// member it must be what the builder's records are made of.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "generator/RuntimeEmission.hpp"

namespace tindrel {
namespace {

using Members = std::vector<std::string>;  // "Box", then "int x" and so on

// How the schema spells the type of a record's member, and of the elements of a list.
std::string inSchema(std::string type) {
    if (type == "std::string") return "const char*";
    if (type.ends_with("Def")) type.resize(type.size() - 3);
    return type;
}

std::string pointerTo(const std::string& type) {
    return type == "const char*" ? type + " const*" : "const " + type + "*";
}

#define RECORD(Row, Record) members.push_back(#Row);
#define FIELD(type, name, value) members.push_back(inSchema(#type) + " " #name);
#define NESTED(Row, name) members.push_back(#Row " " #name);
#define SHAPE(name) members.push_back("float " #name "[9]");
#define LIST(element, name, count, array)                         \
    members.push_back(pointerTo(inSchema(#element)) + " " #name); \
    members.push_back("std::size_t " #count);
#define END_RECORD

Members characterRecords() {
    Members members;
#define OPTIONAL_LIST LIST
#include "reader/Characters.def"
    return members;
}

#define RECORD(Row, Record) members.push_back(#Row);
#define FIELD(type, name, value) members.push_back(inSchema(#type) + " " #name);
#define SHAPE(name) members.push_back("float " #name "[9]");
#define LIST(element, name, count, array)                         \
    members.push_back(pointerTo(inSchema(#element)) + " " #name); \
    members.push_back("std::size_t " #count);
#define END_RECORD

Members stageRecords() {
    Members members;
#include "reader/Stages.def"
    return members;
}

// The structures of a schema, which declares one or more members of a type at a time.
Members membersOf(std::string_view header) {
    Members members;
    std::istringstream words{std::string(header)};
    std::string type;
    bool inside = false;
    for (std::string word; words >> word;) {
        if (word == "struct") {
            words >> word;
            members.push_back(word);
            words >> word;  // the brace
            inside = true;
        } else if (word == "};") {
            inside = false;
        } else if (inside && (word.ends_with(',') || word.ends_with(';'))) {
            const bool last = word.ends_with(';');
            word.pop_back();
            members.push_back(type + word);
            if (last) type.clear();
        } else if (inside) {
            type += word + ' ';
        }
    }
    return members;
}

TEST(Schema, HoldsEveryMemberOfTheRecordsInTheirOrder) {
    EXPECT_EQ(membersOf(schemaHeader("GeneratedCharacters.hpp")), characterRecords());
    EXPECT_EQ(membersOf(schemaHeader("GeneratedStages.hpp")), stageRecords());
}

}  // namespace
}  // namespace tindrel
