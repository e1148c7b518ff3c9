#pragma once

// Paths as game text writes them, and the files on disk that they mean.

#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "reader/TreeWalk.hpp"

namespace tindrel {

// The path relative to the data folder: forward slashes, no leading "./", one leading "data/" in
// any case removed, lexically normal, case kept. Pure text.
[[nodiscard]] std::string normalizeDataPath(std::string_view text);

// False for a path that is empty, absolute, rooted (a drive letter included, on every system) or
// holds an element "..".
[[nodiscard]] bool isSafeRelativePath(const std::filesystem::path& path);

// True when `path` is `root` or lies below it, by path elements of the canonical forms.
[[nodiscard]] bool isInsideRoot(const std::filesystem::path& root,
                                const std::filesystem::path& path);

// The same test under the name that tells its use: an output folder or a PAK target.
[[nodiscard]] inline bool isInsideDataFolder(const std::filesystem::path& dataDir,
                                             const std::filesystem::path& candidate) {
    return isInsideRoot(dataDir, candidate);
}

// The path in UTF-8 with the system's own separators, for a person to read.
[[nodiscard]] std::string displayPath(const std::filesystem::path& path);

// Finds files below one folder without regard to case. Lists a directory at most once, and only
// when an exact spelling is not there. Not for a folder that changes meanwhile.
class PathResolver {
  public:
    // `known` is what a walk has found below the root; it spares questions to the disk and must
    // outlive the resolver.
    explicit PathResolver(std::filesystem::path root, std::span<const TreeEntry> known = {});

    // The file that `text` means: the best spelling that is on disk, the tail as written where it
    // is not. Empty when the path is unsafe, or ambiguous on a file system that keeps case.
    [[nodiscard]] const std::filesystem::path& resolve(std::string_view text);

    [[nodiscard]] const std::filesystem::path& root() const { return root_; }

    // Regular or directory, links apart; none for all else and for what cannot be asked.
    [[nodiscard]] std::filesystem::file_type plainType(const std::filesystem::path& path) const;

  private:
    using Listing = std::unordered_multimap<std::string, std::filesystem::path>;

    // What one more element of a path leads to.
    struct Place {
        std::filesystem::path path;
        bool known = false;   // on disk
        bool inside = false;  // unambiguous, and canonically below the root
    };

    [[nodiscard]] std::filesystem::path resolveUncached(std::string_view text);
    [[nodiscard]] Place step(const Place& folder, std::string_view element);
    [[nodiscard]] const Listing& list(const std::filesystem::path& folder);

    std::filesystem::path root_;
    bool rootIsNormal_ = false;
    std::unordered_map<std::string, std::filesystem::path> resolved_;
    std::unordered_map<std::string, Place> folders_;  // by their normalised spelling
    std::map<std::filesystem::path, Listing> listings_;
    std::unordered_map<NativeView, std::filesystem::file_type> knownTypes_;
};

// One resolution without a cache.
[[nodiscard]] std::filesystem::path resolveDataPath(const std::filesystem::path& root,
                                                    std::string_view text);

}  // namespace tindrel
