// Variables that scripts keep under names of their own: numbered ones of a context, and those of an
// actor. What they weigh is counted by their values.

#include <string>

#include "HostFunctions.hpp"

namespace port::host {
namespace {

// Null for a number out of range.
std::string* scriptVariableName(HostCall& call) {
    const int index = call.integer(0);
    if (index < 0 || index >= script::kMaxScriptVariables) {
        call.tag(call.name, "-index");
        return nullptr;
    }
    call.scratch = "__scriptvar_" + std::to_string(index);
    return &call.scratch;
}

ScriptVariables* variablesOf(World& world, Actor* actor) {
    if (!actor) return nullptr;
    if (isPlayer(*actor)) return &world.slots[actor->handle - kPlayer1Handle].scriptVars;
    return &static_cast<RuntimeEntity*>(actor)->scriptVars;
}

}  // namespace

ScriptValue getScriptVariable(HostCall& call) {
    const std::string* name = scriptVariableName(call);
    if (!name) return {};
    const auto found = call.context.local.find(*name);
    return found == call.context.local.end() ? ScriptValue() : found->second;
}

ScriptValue setScriptVariable(HostCall& call) {
    const std::string* name = scriptVariableName(call);
    if (!name) return {};
    return call.context.local[*name] = call.value(1);
}

ScriptValue getActorVariable(HostCall& call) {
    const ScriptVariables* variables = variablesOf(call.world(), call.actor(0));
    if (!variables) return {};
    const auto found = variables->find(call.text(1));
    return found == variables->end() ? ScriptValue() : found->second;
}

ScriptValue setActorVariable(HostCall& call) {
    ScriptVariables* variables = variablesOf(call.world(), call.actor(0));
    if (!variables) return {};
    const std::string& name = call.text(1);
    const auto known = variables->find(name);
    if (known == variables->end()) {
        variables->emplace(name, call.value(2));
    } else {
        known->second = call.value(2);
    }
    return call.value(2);
}

ScriptValue clearActorVariable(HostCall& call) {
    ScriptVariables* variables = variablesOf(call.world(), call.actor(0));
    if (!variables) return false;
    if (!call.has(1)) {
        variables->clear();
        return true;
    }
    const auto known = variables->find(call.text(1));
    if (known != variables->end()) variables->erase(known);
    return true;
}

}  // namespace port::host
