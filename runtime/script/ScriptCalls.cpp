// Calls, variables of the context, and operators on what is no number.

#include <algorithm>
#include <span>
#include <stdexcept>
#include <utility>

#include "ScriptBuiltins.hpp"
#include "ScriptExec.hpp"
#include "ScriptOperators.hpp"
#include "ScriptValue.hpp"

namespace port::script {

// --- Calls

bool Exec::callBuiltin(const CallSite& site, const Instr* next, ScriptValue* args) {
    for (std::size_t i = 0; i < site.count; ++i) chargeText(args[i]);
    ScriptValue result;
    BuiltinCall call{*this, *context_, globals_, random_, {args, site.count}, result};
    if (!site.builtin->run(call)) {
        if (site.user == nullptr) return callHost(site, next, args);
        callUser(site, next, args);
        return false;
    }
    take(*args, result);
    return true;
}

// A host may run further scripts. A break or continue that leaves such a run passes through the
// host and concerns the loops around the call.
bool Exec::callHost(const CallSite& site, const Instr* next, ScriptValue* args) {
    ScriptValue result;
    bool answered = false;
    if (site.host.function != nullptr) {
        for (std::size_t i = 0; i < site.count; ++i) chargeText(args[i]);
        const std::size_t noted = unsupported_->names().size();
        const std::span<const ScriptValue> given(args, site.count);
        const auto leaveBy = [&](bool breaks) {
            forgetVariables();
            escape(breaks, next);
            return false;
        };
        try {
            answered = host_->callHostFunction(site.host, given, *context_, *unsupported_, result);
        } catch (const BreakSignal&) {
            return leaveBy(true);
        } catch (const ContinueSignal&) {
            return leaveBy(false);
        }
        forgetVariables();
        chargeEntries(unsupported_->names().size() - noted);
    }
    if (!answered) {
        charge(site.name->size() / kTextPerStep);
        chargeEntries(1);
        unsupported_->add(*site.name);
        result.emplace<std::monostate>();
    }
    take(*args, result);
    return true;
}

// --- Variables of the context

// A variable that nobody set reads as 0, and only the name "null" as no handle.
void Exec::look(std::uint32_t name, Known& known) {
    static const ScriptValue kUnset(0.0);
    static const ScriptValue kNobody(std::uintptr_t{0});
    const std::string& text = library_.names().text(static_cast<std::int32_t>(name));
    charge(1 + text.size() / kTextPerStep);
    known = {epoch_, equalsFolded(text, "null") ? &kNobody : &kUnset, nullptr};
    const auto local = context_->local.find(text);
    if (local != context_->local.end()) {
        known.value = known.own = &local->second;
    } else if (const auto global = globals_.find(text); global != globals_.end()) {
        known.value = &global->second;
    }
}

void Exec::load(std::uint32_t name, ScriptValue& to) {
    copy(to, *known(name).value);
}

void Exec::store(std::uint32_t name, const ScriptValue& from) {
    Known& found = known(name);
    if (found.own == nullptr) {
        chargeEntries(1);
        const std::string& text = library_.names().text(static_cast<std::int32_t>(name));
        found.value = found.own = &context_->local[text];
    }
    copy(*found.own, from);
}

void Exec::update(std::uint32_t name, Word op, const ScriptValue& right) {
    const ScriptValue& value = *known(name).value;
    chargeText(value);
    chargeText(right);
    store(name, arithmetic(op, num(value), num(right)));
}

// --- Operators

bool Exec::compares(Word op, const ScriptValue& left, const ScriptValue& right) {
    const auto* const a = std::get_if<ScriptText>(&left);
    const auto* const b = std::get_if<ScriptText>(&right);
    if (a != nullptr && b != nullptr && (op == Word::Equal || op == Word::NotEqual)) {
        const bool sized = a->size() == b->size();
        if (sized && !a->isShared(*b)) charge(a->size() / kTextPerStep);
        return (sized && *a == *b) == (op == Word::Equal);
    }
    if (a != nullptr || b != nullptr) {
        chargeText(left);
        chargeText(right);
    }
    return compare(op, left, right);
}

void Exec::binary(const Instr& instr, ScriptValue& to, const ScriptValue& left,
                  const ScriptValue& right) {
    if (isComparison(instr.word)) return putTruth(to, compares(instr.word, left, right));
    const bool texts = left.index() == 2 || right.index() == 2;
    if (texts) {
        chargeText(left);
        chargeText(right);
        if (instr.op == Op::Add || instr.op == Op::AddK) return join(to, left, right);
    }
    put(to, arithmetic(instr.word, num(left), num(right)));
}

void Exec::join(ScriptValue& to, const ScriptValue& left, const ScriptValue& right) {
    std::string text = str(left);
    if (const auto* tail = std::get_if<ScriptText>(&right)) {
        text += tail->str();
    } else {
        text += str(right);
    }
    if (text.size() > kMaxText) throw std::runtime_error("script text too long");
    chargeEntries(1);
    to.emplace<ScriptText>(std::move(text));
}

// Where the key leads in a switch whose labels are numbers far apart.
std::int32_t Exec::labelOf(const SwitchTable& table, const ScriptValue& key) {
    if (key.index() == 2) {
        charge(kEntrySteps * table.numbers.size());
        chargeText(key);
        for (const auto& [label, target] : table.numbers) {
            if (eq(key, label)) return target;
        }
        return table.otherwise;
    }
    if (key.index() == 5) return table.otherwise;
    const double value = num(key);
    const auto behind =
        std::ranges::lower_bound(table.numbers, value, {}, &std::pair<double, std::int32_t>::first);
    if (behind != table.numbers.end() && isSame(value, behind->first)) return behind->second;
    if (behind != table.numbers.begin() && isSame(value, behind[-1].first))
        return behind[-1].second;
    return table.otherwise;
}

}  // namespace port::script
