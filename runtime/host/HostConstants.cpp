// Constants by name. Names of animations and types are the words themselves; their numbers never
// surface.

#include <cmath>
#include <optional>

#include "Bindings.hpp"
#include "Commands.hpp"
#include "Defence.hpp"
#include "EntityRules.hpp"
#include "HostFunctions.hpp"
#include "HostProperties.hpp"
#include "KeyTable.hpp"

namespace port::host {
namespace {

// The kinds of values, as "typeof" tells them.
constexpr double kVtEmpty = 0;
constexpr double kVtInteger = 1;
constexpr double kVtDecimal = 2;
constexpr double kVtPointer = 5;
constexpr double kVtText = 6;

// A number, or where it is not null a word.
struct ConstantRow {
    std::string_view name;
    double number;
    const char* word;
    bool mended;
};

constexpr auto kConstants = sortedTable(std::to_array<ConstantRow>({
#define NUMBER(name, value, reading) {name, value, nullptr, reading},
#define WORD(name, key, reading) {name, 0, key, reading},
#include "HostConstants.def"
#undef NUMBER
#undef WORD
                                        }),
                                        &ConstantRow::name);

// What is left of the text behind a prefix in any case; null for another text.
std::optional<std::string_view> behind(std::string_view prefix, std::string_view text) {
    if (!startsWithFolded(text, prefix)) return std::nullopt;
    return text.substr(prefix.size());
}

}  // namespace

// Numbers are all of one kind to the machine: whole ones are integers. The handle of nobody is what
// NULL() gives, and so as good as empty.
ScriptValue kindOfValue(HostCall& call) {
    const ScriptValue& value = call.value(0);
    if (const auto* number = std::get_if<double>(&value)) {
        return std::trunc(*number) == *number ? kVtInteger : kVtDecimal;
    }
    if (const auto* handle = std::get_if<std::uintptr_t>(&value)) {
        return *handle == 0 ? kVtEmpty : kVtPointer;
    }
    if (std::holds_alternative<bool>(value)) return kVtInteger;
    if (std::holds_alternative<ScriptText>(value)) return kVtText;
    return std::holds_alternative<std::monostate>(value) ? kVtEmpty : kVtPointer;
}

ScriptValue constant(HostCall& call) {
    const std::string& given = call.text(0);
    for (const std::string_view prefix : {"ani_", "type_"}) {
        if (const auto name = behind(prefix, given)) return ScriptText(foldAscii(*name));
    }
    if (const ConstantRow* row = namedRow(kConstants, &ConstantRow::name, call, 0)) {
        return row->word ? scriptValue(row->word) : row->number;
    }
    // Besides, every property of actors has a constant that is its key.
    const auto key = call.tick.config.asWritten ? std::nullopt : behind("entity_property_", given);
    if (key && isActorKey(*key)) return ScriptText(foldAscii(*key));
    return 0.0;
}

}  // namespace port::host
