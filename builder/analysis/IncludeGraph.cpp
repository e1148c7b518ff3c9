#include "analysis/IncludeGraph.hpp"

#include <algorithm>
#include <bit>
#include <limits>

namespace tindrel {
namespace {

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

struct Visit {
    FileId file;
    std::size_t next = 0;  // index of the include to look at
};

}  // namespace

std::vector<FileId> IncludeGraph::reach(FileId root, bool& complete) const {
    std::vector<FileId> files{root};
    // A byte each: the loop below takes most of the time that dense includes cost.
    std::vector<char> met(nodes_.size(), 0);
    met[root] = 1;
    std::size_t first = 0;
    for (int depth = 1; depth < kIncludeDepthLimit; ++depth) {
        const std::size_t last = files.size();
        for (; first < last; ++first) {
            for (const FileId next : nodes_[files[first]].includes) {
                if (met[next] != 0) continue;
                met[next] = 1;
                files.push_back(next);
            }
        }
    }
    const auto isMet = [&](FileId file) { return met[file] != 0; };
    complete = std::all_of(files.begin() + static_cast<std::ptrdiff_t>(first), files.end(),
                           [&](FileId file) {
                               const std::vector<FileId>& includes = nodes_[file].includes;
                               return std::all_of(includes.begin(), includes.end(), isMet);
                           });
    return files;
}

std::vector<FileId> IncludeGraph::walk(FileId root, std::uint64_t& budget) const {
    std::vector<FileId> order{root};
    // A file met again is gone into again only from a smaller depth: from the same or a greater one
    // it shows nothing that it did not show before.
    std::vector<int> depthOf(nodes_.size(), kIncludeDepthLimit);
    depthOf[root] = 0;
    std::vector<Visit> stack{{root}};
    while (!stack.empty()) {
        Visit& top = stack.back();
        const std::vector<FileId>& includes = nodes_[top.file].includes;
        if (top.next == includes.size()) {
            stack.pop_back();
            continue;
        }
        if (budget == 0) return {};
        --budget;
        const FileId file = includes[top.next++];
        const int depth = static_cast<int>(stack.size());
        if (depth < depthOf[file]) {
            if (depthOf[file] == kIncludeDepthLimit) order.push_back(file);
            depthOf[file] = depth;
            stack.push_back({file});
        }
    }
    return order;
}

// Tarjan's algorithm with a stack of its own.
IncludeGraph::Groups IncludeGraph::groups(FileId first) const {
    const std::size_t count = nodes_.size() - first;
    Groups groups{first, std::vector(count, kNone), {}};
    std::vector<std::uint32_t> index(count, kNone);
    std::vector<std::uint32_t> low(count, 0);
    std::vector<FileId> open;
    std::vector<Visit> stack;
    std::uint32_t counter = 0;
    const auto enter = [&](FileId file) {
        index[file - first] = low[file - first] = counter++;
        open.push_back(file);
        stack.push_back({file});
    };
    for (FileId start = first; start < nodes_.size(); ++start) {
        if (index[start - first] == kNone) enter(start);
        while (!stack.empty()) {
            const FileId file = stack.back().file;
            const std::vector<FileId>& includes = nodes_[file].includes;
            std::uint32_t& lowest = low[file - first];
            if (stack.back().next < includes.size()) {
                const FileId next = includes[stack.back().next++];
                if (next < first) continue;
                if (index[next - first] == kNone) {
                    enter(next);
                } else if (groups.of(next) == kNone) {
                    lowest = std::min(lowest, index[next - first]);
                }
                continue;
            }
            stack.pop_back();
            if (!stack.empty()) {
                std::uint32_t& above = low[stack.back().file - first];
                above = std::min(above, lowest);
            }
            if (lowest != index[file - first]) continue;
            std::vector<FileId>& members = groups.members.emplace_back();
            do {
                members.push_back(open.back());
                groups.ofFile[open.back() - first] =
                    static_cast<std::uint32_t>(groups.members.size() - 1);
                open.pop_back();
            } while (members.back() != file);
        }
    }
    return groups;
}

std::vector<std::vector<SymbolId>> IncludeGraph::undefinedUses(
    SymbolId symbolCount, const std::vector<bool>& wanted) const {
    // One word holds 64 symbols of a group; blocks of 64 are carried through the graph in turn, so
    // that memory stays linear in the files.
    constexpr SymbolId kBlock = 64;
    struct Sets {
        std::uint64_t uses = 0, definitions = 0;
    };
    const Groups groups = this->groups(0);
    struct Mark {
        FileId file;
        SymbolId symbol;
        bool use;
    };
    std::vector<std::vector<Mark>> marks((symbolCount + kBlock - 1) / kBlock);
    for (FileId file = 0; file < nodes_.size(); ++file) {
        for (const SymbolId s : nodes_[file].uses) marks[s / kBlock].push_back({file, s, true});
        for (const SymbolId s : nodes_[file].definitions) {
            marks[s / kBlock].push_back({file, s, false});
        }
    }
    std::vector<std::vector<SymbolId>> result(nodes_.size());
    std::vector<Sets> sets(groups.members.size());
    for (SymbolId block = 0; block < marks.size(); ++block) {
        std::fill(sets.begin(), sets.end(), Sets{});
        for (const Mark& mark : marks[block]) {
            Sets& own = sets[groups.of(mark.file)];
            (mark.use ? own.uses : own.definitions) |= 1ULL << (mark.symbol % kBlock);
        }
        for (std::uint32_t group = 0; group < sets.size(); ++group) {
            for (const FileId file : groups.members[group]) {
                for (const FileId next : nodes_[file].includes) {
                    sets[group].uses |= sets[groups.of(next)].uses;
                    sets[group].definitions |= sets[groups.of(next)].definitions;
                }
            }
            std::uint64_t undefined = sets[group].uses & ~sets[group].definitions;
            for (; undefined != 0; undefined &= undefined - 1) {
                const SymbolId symbol =
                    block * kBlock + static_cast<SymbolId>(std::countr_zero(undefined));
                for (const FileId file : groups.members[group]) {
                    if (wanted[file]) result[file].push_back(symbol);
                }
            }
        }
    }
    return result;
}

void IncludeGraph::extendHeights(std::vector<int>& heights) const {
    const Groups groups = this->groups(static_cast<FileId>(heights.size()));
    heights.resize(nodes_.size());
    for (std::uint32_t group = 0; group < groups.members.size(); ++group) {
        int height = 0;
        for (const FileId file : groups.members[group]) {
            for (const FileId next : nodes_[file].includes) {
                const bool inCycle = next >= groups.first && groups.of(next) == group;
                const int chain = inCycle ? kIncludeDepthLimit : heights[next] + 1;
                height = std::max(height, std::min(chain, kIncludeDepthLimit));
            }
        }
        for (const FileId file : groups.members[group]) heights[file] = height;
    }
}

}  // namespace tindrel
