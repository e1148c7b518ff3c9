#include "ScriptBuiltins.hpp"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include "ScriptExec.hpp"
#include "ScriptLimits.hpp"
#include "ScriptPreprocessor.hpp"
#include "ScriptValue.hpp"

namespace port::script {
namespace {

// Null unless the first argument is an array.
ScriptArray* arrayOf(const BuiltinCall& call) {
    if (call.args.empty()) return nullptr;
    const auto* array = std::get_if<ScriptArrayPtr>(&call.args[0]);
    return array == nullptr ? nullptr : array->get();
}

const std::string* textKey(const BuiltinCall& call) {
    const auto* text = std::get_if<ScriptText>(&call.args[1]);
    return text == nullptr ? nullptr : &text->str();
}

std::int64_t indexKey(const BuiltinCall& call) {
    return integer(num(call.args[1]));
}

bool within(std::int64_t index, std::size_t size) {
    return index >= 0 && static_cast<std::uint64_t>(index) < size;
}

std::string indexedName(const ScriptValue& index) {
    return "#" + std::to_string(integer(num(index)));
}

void grow(BuiltinCall& call, std::size_t from, std::size_t to) {
    if (to > kMaxArray) throw std::runtime_error("script array too large");
    call.exec.chargeEntries(to - std::min(from, to));
}

void read(BuiltinCall& call, const ScriptVariables& variables, const std::string& name) {
    const auto found = variables.find(name);
    if (found != variables.end()) call.result = found->second;
}

// The stored value is the result as well.
void write(BuiltinCall& call, ScriptVariables& variables, const std::string& name,
           ScriptValue& value) {
    call.result = value;
    const auto [slot, added] = variables.try_emplace(name);
    if (added) {
        call.exec.forgetVariables();
        call.exec.chargeEntries(1);
    }
    slot->second = std::move(value);
}

bool getGlobalVar(BuiltinCall& call) {
    read(call, call.globals, str(call.args[0]));
    return true;
}

bool setGlobalVar(BuiltinCall& call) {
    write(call, call.globals, str(call.args[0]), call.args[1]);
    return true;
}

// Takes the table's memory as well, which clearing it would walk again each time.
void forgetAll(BuiltinCall& call, ScriptVariables& variables) {
    call.exec.charge(kEntrySteps * variables.size());
    ScriptVariables().swap(variables);
}

bool clearGlobalVar(BuiltinCall& call) {
    forgetAll(call, call.globals);
    call.exec.forgetVariables();
    call.result = 1.0;
    return true;
}

bool getLocalVar(BuiltinCall& call) {
    read(call, call.context.local, str(call.args[0]));
    return true;
}

bool setLocalVar(BuiltinCall& call) {
    write(call, call.context.local, str(call.args[0]), call.args[1]);
    return true;
}

bool clearLocalVar(BuiltinCall& call) {
    forgetAll(call, call.context.local);
    call.exec.forgetVariables();
    call.result = 1.0;
    return true;
}

bool maxGlobalVarIndex(BuiltinCall& call) {
    call.result = static_cast<double>(call.globals.size()) - 1.0;
    return true;
}

bool getIndexedVar(BuiltinCall& call) {
    read(call, call.globals, indexedName(call.args[0]));
    return true;
}

bool setIndexedVar(BuiltinCall& call) {
    write(call, call.globals, indexedName(call.args[0]), call.args[1]);
    return true;
}

bool clearIndexedVar(BuiltinCall& call) {
    call.exec.charge(kEntrySteps * call.globals.size());
    std::erase_if(call.globals, [](const auto& entry) { return entry.first.starts_with('#'); });
    call.exec.forgetVariables();
    call.result = 1.0;
    return true;
}

bool isEmpty(BuiltinCall& call) {
    call.result = call.args.empty() || call.args[0].index() == 0;
    return true;
}

bool rand(BuiltinCall& call) {
    call.result = static_cast<double>(static_cast<std::int32_t>(call.random()));
    return true;
}

bool null(BuiltinCall& call) {
    call.result = std::uintptr_t{0};
    return true;
}

bool newArray(BuiltinCall& call) {
    auto array = newScriptArray();
    call.exec.chargeEntries(1);
    const std::int64_t size = call.args.empty() ? 0 : integer(num(call.args[0]));
    if (size > 0) {
        grow(call, 0, static_cast<std::size_t>(size));
        array->indexed.resize(static_cast<std::size_t>(size));
    }
    call.result = std::move(array);
    return true;
}

bool size(BuiltinCall& call) {
    const ScriptArray* array = arrayOf(call);
    call.result = array ? static_cast<double>(array->indexed.size() + array->named.size()) : 0.0;
    return true;
}

bool get(BuiltinCall& call) {
    const ScriptArray* array = arrayOf(call);
    if (array == nullptr) return true;
    if (const std::string* name = textKey(call)) {
        read(call, array->named, *name);
    } else if (const std::int64_t index = indexKey(call); within(index, array->indexed.size())) {
        call.result = array->indexed[static_cast<std::size_t>(index)];
    }
    return true;
}

bool set(BuiltinCall& call) {
    ScriptArray* array = arrayOf(call);
    if (array == nullptr) return true;
    if (const std::string* name = textKey(call)) {
        if (!array->named.contains(*name)) {
            grow(call, array->namedOrder.size(), array->namedOrder.size() + 1);
            array->namedOrder.push_back(*name);
        }
        write(call, array->named, *name, call.args[2]);
        return true;
    }
    const std::int64_t index = indexKey(call);
    if (index < 0) {
        call.result = 0.0;
        return true;
    }
    const auto place = static_cast<std::size_t>(index);
    if (place >= array->indexed.size()) {
        grow(call, array->indexed.size(), place + 1);
        array->indexed.resize(place + 1);
    }
    call.result = call.args[2];
    array->indexed[place] = std::move(call.args[2]);
    return true;
}

bool add(BuiltinCall& call) {
    ScriptArray* array = arrayOf(call);
    if (array == nullptr) return true;
    const std::int64_t index = indexKey(call);
    const std::size_t size = array->indexed.size();
    const bool fits = within(index, size + 1);
    if (fits) {
        grow(call, size, size + 1);
        call.exec.charge(size - static_cast<std::size_t>(index));
        array->indexed.insert(array->indexed.begin() + index, std::move(call.args[2]));
    }
    call.result = fits ? 1.0 : 0.0;
    return true;
}

bool removeNamed(ScriptArray& array, const std::string& name) {
    if (array.named.erase(name) == 0) return false;
    array.namedOrder.erase(std::find(array.namedOrder.begin(), array.namedOrder.end(), name));
    const std::size_t size = array.namedOrder.size();
    if (array.cursor >= size) array.cursor = size == 0 ? 0 : size - 1;
    return true;
}

bool removeIndexed(ScriptArray& array, std::int64_t index) {
    if (!within(index, array.indexed.size())) return false;
    array.indexed.erase(array.indexed.begin() + index);
    return true;
}

bool erase(BuiltinCall& call) {
    ScriptArray* array = arrayOf(call);
    if (array == nullptr) return true;
    bool was = false;
    if (const std::string* name = textKey(call)) {
        // Names of one length may differ in their last letter only.
        call.exec.charge(array->namedOrder.size() * (1 + name->size() / kTextPerStep));
        was = removeNamed(*array, *name);
    } else {
        call.exec.charge(array->indexed.size());
        was = removeIndexed(*array, indexKey(call));
    }
    call.result = was ? 1.0 : 0.0;
    return true;
}

bool next(BuiltinCall& call) {
    ScriptArray* array = arrayOf(call);
    if (array == nullptr) return true;
    if (array->cursor + 1 < array->namedOrder.size()) ++array->cursor;
    call.result = 1.0;
    return true;
}

bool previous(BuiltinCall& call) {
    ScriptArray* array = arrayOf(call);
    if (array == nullptr) return true;
    if (array->cursor > 0) --array->cursor;
    call.result = 1.0;
    return true;
}

bool reset(BuiltinCall& call) {
    ScriptArray* array = arrayOf(call);
    if (array == nullptr) return true;
    array->cursor = 0;
    call.result = 1.0;
    return true;
}

// With more arguments it asks for the keys of a player, which the host knows.
bool key(BuiltinCall& call) {
    if (call.args.size() > 1) return false;
    const ScriptArray* array = arrayOf(call);
    if (array != nullptr && array->cursor < array->namedOrder.size()) {
        const std::string& name = array->namedOrder[array->cursor];
        call.exec.charge(name.size() / kTextPerStep);
        call.result = name;
    }
    return true;
}

bool value(BuiltinCall& call) {
    const ScriptArray* array = arrayOf(call);
    if (array != nullptr && array->cursor < array->namedOrder.size()) {
        read(call, array->named, array->namedOrder[array->cursor]);
    }
    return true;
}

// Drops the argument's own reference: the array lives on while a variable holds it. What is no
// array is left to the functions of the game and the host, which free other things.
bool free(BuiltinCall& call) {
    if (arrayOf(call) == nullptr) return false;
    call.args[0].emplace<std::monostate>();
    call.result = 1.0;
    return true;
}

constexpr Builtin kBuiltins[] = {
    {"getglobalvar", 1, getGlobalVar},
    {"setglobalvar", 2, setGlobalVar},
    {"clearglobalvar", 0, clearGlobalVar},
    {"getlocalvar", 1, getLocalVar},
    {"setlocalvar", 2, setLocalVar},
    {"clearlocalvar", 0, clearLocalVar},
    {"maxglobalvarindex", 0, maxGlobalVarIndex},
    {"getindexedvar", 1, getIndexedVar},
    {"setindexedvar", 2, setIndexedVar},
    {"clearindexedvar", 0, clearIndexedVar},
    {"isempty", 0, isEmpty},
    {"rand", 0, rand},
    {"null", 0, null},
    {"array", 0, newArray},
    {"size", 1, size},
    {"get", 2, get},
    {"set", 3, set},
    {"add", 3, add},
    {"delete", 2, erase},
    {"next", 1, next},
    {"previous", 1, previous},
    {"reset", 1, reset},
    {"key", 1, key},
    {"value", 1, value},
    {"free", 1, free},
};

}  // namespace

const Builtin* findBuiltin(std::string_view name, std::size_t count) {
    const auto* found = std::find_if(std::begin(kBuiltins), std::end(kBuiltins),
                                     [&](const Builtin& b) { return b.name == name; });
    return found == std::end(kBuiltins) || count < found->needs ? nullptr : found;
}

}  // namespace port::script
