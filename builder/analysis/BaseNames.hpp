#pragma once

// A project's files by their names alone, for a name whose folder is wrong or missing.

#include <span>
#include <string_view>
#include <unordered_map>

#include "reader/TreeWalk.hpp"

namespace tindrel {

class BaseNames {
  public:
    // `entries` must outlive this.
    explicit BaseNames(std::span<const TreeEntry> entries) {
        for (const TreeEntry& entry : entries) {
            if (!entry.regularFile) continue;
            const auto [known, isNew] = files_.try_emplace(entry.name(), &entry.native);
            if (!isNew) known->second = nullptr;
        }
    }

    // The one file of that name, which is in lower case; null where there is none, or several.
    [[nodiscard]] const NativePath* only(std::string_view name) const {
        const auto found = files_.find(name);
        return found == files_.end() ? nullptr : found->second;
    }

  private:
    std::unordered_map<std::string_view, const NativePath*> files_;
};

}  // namespace tindrel
