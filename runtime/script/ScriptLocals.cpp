#include "ScriptLocals.hpp"

#include <algorithm>
#include <iterator>

namespace port::script {

const std::uint16_t* ScriptLocals::find(std::int32_t name) const {
    const auto local = locals_.find(name);
    return local == locals_.end() ? nullptr : &local->second.place;
}

const std::uint16_t* ScriptLocals::sure(std::int32_t name) const {
    const auto local = locals_.find(name);
    return local == locals_.end() || !local->second.sure ? nullptr : &local->second.place;
}

void ScriptLocals::declare(std::int32_t name, std::uint16_t place) {
    locals_[name] = {place};
    ++declared_;
}

bool ScriptLocals::ensure(std::int32_t name) {
    Local& local = locals_.at(name);
    if (local.sure) return false;
    local.sure = true;
    trail_.push_back(name);
    return true;
}

void ScriptLocals::unsure(std::size_t mark) {
    for (; trail_.size() > mark; trail_.pop_back()) locals_.at(trail_.back()).sure = false;
}

std::vector<std::int32_t> ScriptLocals::doubted() const {
    std::vector<std::int32_t> names;
    std::ranges::copy_if(doubted_, std::back_inserter(names),
                         [&](std::int32_t name) { return locals_.contains(name); });
    return names;
}

std::int32_t ScriptLocals::maybe(std::int32_t name) const {
    const auto found = std::ranges::lower_bound(maybes_, name);
    if (found == maybes_.end() || *found != name) return -1;
    return static_cast<std::int32_t>(found - maybes_.begin());
}

}  // namespace port::script
