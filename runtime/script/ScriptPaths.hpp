#pragma once

// Where script files lie. Scripts were written for a disk that ignores case and often name their
// files from "data/", so every lookup folds both. The disk is asked once for each answer.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "TextFields.hpp"

namespace port::script {

// ASCII lower case, byte by byte.
[[nodiscard]] inline std::string lower(std::string_view text) {
    return foldAscii(text);
}

// `raw` with forward slashes, without any leading "data/", normalised. False for a path that is
// absolute, begins with a drive letter or climbs out by "..".
[[nodiscard]] bool relativeScriptPath(std::string_view raw, std::filesystem::path& out);

class ScriptPaths {
  public:
    explicit ScriptPaths(std::filesystem::path root) : root_(std::move(root)) {}

    [[nodiscard]] const std::filesystem::path& root() const { return root_; }

    // The file that `raw` means in the script `current`: below the root, else beside `current` as
    // long as that lies below the root. `out` may not exist. False if `raw` is empty or unsafe.
    bool safeScriptPath(const std::filesystem::path& current, std::string_view raw,
                        std::filesystem::path& out);
    // `path` with the case that its components have on the disk; what is missing stays as written.
    [[nodiscard]] std::filesystem::path scriptCasePath(const std::filesystem::path& path);
    // The file that `relative`, which `raw` came to, means below the root, else the only one of its
    // base name; the place below the root if there is none.
    [[nodiscard]] std::filesystem::path locate(std::string_view raw,
                                               const std::filesystem::path& relative);
    // The only file below the root with the file name of `wanted`, in any case; empty if there is
    // none or more than one.
    [[nodiscard]] std::filesystem::path scriptUniqueBasename(std::string_view wanted);
    // Whether scriptCasePath(path) names something on the disk.
    [[nodiscard]] bool exists(const std::filesystem::path& path) { return folded(path).exists; }

  private:
    struct Folded {
        std::filesystem::path path;
        bool exists = false;
        std::filesystem::path inside{};  // canonical, if that lies below the root
        bool judged = false;
    };
    // Lower-cased name to the first entry with it.
    using Listing = std::unordered_map<std::string, std::filesystem::path>;

    Folded& folded(const std::filesystem::path& path);
    void judge(Folded& known) const;
    const Listing& listing(const std::filesystem::path& folder);
    void indexBasenames();

    std::filesystem::path root_;
    std::optional<bool> ignoresCase_;  // the disk does; asked once
    std::unordered_map<std::string, Folded> folded_;
    std::unordered_map<std::string, Listing> listings_;
    Listing basenames_;  // an empty path marks a name that stands twice
    bool indexed_ = false;
};

}  // namespace port::script
