#pragma once

// Which script files bring in which. Real games include densely: a graph walked without memory
// takes tens of millions of visits, so what follows from reachability is computed here in time and
// memory linear in files and includes.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tindrel {

using FileId = std::uint32_t;
using SymbolId = std::uint32_t;

// An include this deep is not followed any more.
inline constexpr int kIncludeDepthLimit = 32;

class IncludeGraph {
  public:
    struct Node {
        std::vector<FileId> includes;  // in the order of the text
        std::vector<SymbolId> uses;
        std::vector<SymbolId> definitions;
    };

    FileId add() {
        nodes_.emplace_back();
        return static_cast<FileId>(nodes_.size() - 1);
    }
    [[nodiscard]] Node& node(FileId file) { return nodes_[file]; }
    [[nodiscard]] const Node& node(FileId file) const { return nodes_[file]; }
    [[nodiscard]] std::size_t size() const { return nodes_.size(); }

    // The files within reach of `root` at a depth below kIncludeDepthLimit, nearest first.
    // `complete` tells whether no file lies beyond.
    [[nodiscard]] std::vector<FileId> reach(FileId root, bool& complete) const;

    // The same files in the order in which a reader of `root` first meets them when he goes into
    // each include where it stands. Empty when that takes more than `budget` steps, which the walk
    // uses up.
    [[nodiscard]] std::vector<FileId> walk(FileId root, std::uint64_t& budget) const;

    // For every file that is `wanted` the symbols that it or a file it reaches uses and none of
    // them defines, in ascending order, without regard to depth.
    [[nodiscard]] std::vector<std::vector<SymbolId>> undefinedUses(
        SymbolId symbolCount, const std::vector<bool>& wanted) const;

    // Adds the files that `heights` lacks: of each the length of the longest chain of includes
    // below it, at most kIncludeDepthLimit, which a cycle always reaches. No earlier file may
    // include them.
    void extendHeights(std::vector<int>& heights) const;

  private:
    // Groups of files that include one another, each group after all groups that it reaches; of the
    // files from `first` on.
    struct Groups {
        FileId first = 0;
        std::vector<std::uint32_t> ofFile;  // the group of each
        std::vector<std::vector<FileId>> members;

        [[nodiscard]] std::uint32_t of(FileId file) const { return ofFile[file - first]; }
    };
    [[nodiscard]] Groups groups(FileId first) const;

    std::vector<Node> nodes_;
};

}  // namespace tindrel
