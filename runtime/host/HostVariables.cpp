// Variables that scripts keep under names of their own: numbered ones of a context, and those of an
// actor.

#include <string>

#include "HostFunctions.hpp"

namespace port::host {
namespace {

using Variables = std::unordered_map<std::string, ScriptValue>;

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

Variables* variablesOf(World& world, Actor* actor) {
    if (!actor) return nullptr;
    if (isPlayer(*actor)) return &world.slots[actor->handle - kPlayer1Handle].scriptVars;
    return &static_cast<RuntimeEntity*>(actor)->scriptVars;
}

std::size_t bytesOf(const Variables::value_type& variable) {
    constexpr std::size_t kEntry = 96;
    const auto* text = std::get_if<std::string>(&variable.second);
    return kEntry + variable.first.size() + (text ? text->size() : 0);
}

bool isShort(const ScriptValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    return !text || text->size() <= script::kMaxVariableText;
}

// The variables of an actor, and the count of their bytes. Players, of whom there are few, are
// bounded by the number of their variables alone.
class Keeper {
  public:
    Keeper(World& world, Actor& actor)
        : variables_(*variablesOf(world, &actor)),
          bytes_(isPlayer(actor) ? uncounted_ : world.scripted.variableBytes) {}

    // False where there is no room.
    bool set(const std::string& name, const ScriptValue& value) {
        if (!isShort(value)) return false;
        auto known = variables_.find(name);
        if (known == variables_.end()) {
            if (!hasRoomFor(name)) return false;
            known = variables_.try_emplace(name).first;
        } else {
            bytes_ -= bytesOf(*known);
        }
        known->second = value;
        bytes_ += bytesOf(*known);
        return true;
    }
    void erase(Variables::const_iterator variable) {
        if (variable == variables_.end()) return;
        bytes_ -= bytesOf(*variable);
        variables_.erase(variable);
    }
    void erase(const std::string& name) { erase(variables_.find(name)); }
    void clear() {
        while (!variables_.empty()) erase(variables_.begin());
    }

  private:
    [[nodiscard]] bool hasRoomFor(const std::string& name) const {
        return variables_.size() < script::kMaxActorVariables &&
               name.size() <= script::kMaxVariableName && bytes_ < script::kMaxVariableBytes;
    }

    Variables& variables_;
    std::size_t uncounted_ = 0;
    std::size_t& bytes_;
};

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
    const Variables* variables = variablesOf(call.world(), call.actor(0));
    if (!variables) return {};
    const auto found = variables->find(call.text(1));
    return found == variables->end() ? ScriptValue() : found->second;
}

ScriptValue setActorVariable(HostCall& call) {
    Actor* actor = call.actor(0);
    if (!actor) return {};
    if (Keeper(call.world(), *actor).set(call.text(1), call.value(2))) return call.value(2);
    call.tag(call.name, "-limit");
    return {};
}

ScriptValue clearActorVariable(HostCall& call) {
    Actor* actor = call.actor(0);
    if (!actor) return false;
    Keeper keeper(call.world(), *actor);
    if (call.has(1)) {
        keeper.erase(call.text(1));
    } else {
        keeper.clear();
    }
    return true;
}

}  // namespace port::host
