#pragma once

// What nothing in a run of a script has answered.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace port {

class UnansweredNames {
  public:
    using Complaints = std::shared_ptr<const std::vector<std::string>>;

    UnansweredNames() = default;
    // On top of what preprocessing had to say, which all runs of the script share; may be null.
    explicit UnansweredNames(Complaints complaints) : complaints_(std::move(complaints)) {}

    // Notes a call, or a tag of a host, unless it stands there already.
    void add(std::string_view name) {
        if (known_.emplace(name).second) names_.emplace_back(name);
    }

    // Of this run, in the order in which they came.
    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }
    // Of the script: every complaint, in order, not deduplicated.
    [[nodiscard]] const std::vector<std::string>& complaints() const {
        static const std::vector<std::string> kNone;
        return complaints_ ? *complaints_ : kNone;
    }
    [[nodiscard]] std::size_t size() const { return complaints().size() + names_.size(); }
    [[nodiscard]] bool empty() const { return size() == 0; }
    // The complaints and then the names.
    [[nodiscard]] std::vector<std::string> all() const {
        std::vector<std::string> list = complaints();
        list.insert(list.end(), names_.begin(), names_.end());
        return list;
    }

  private:
    Complaints complaints_;
    std::vector<std::string> names_;
    std::unordered_set<std::string> known_;  // the same, to be asked
};

}  // namespace port
