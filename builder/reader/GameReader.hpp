#pragma once

// One game's data folder as the passes of a run read it: every path is resolved once, every text
// file is read once, and models and stages are parsed once.

#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "reader/DataPaths.hpp"
#include "reader/Mends.hpp"
#include "reader/ModelDef.hpp"
#include "reader/StageDef.hpp"
#include "reader/TextLines.hpp"

namespace tindrel {

class GameReader {
  public:
    // `dataDir` is what is searched; `projectRoot` is the base of the records' source paths.
    // `known` is what a walk has found below `dataDir`, if there was one; it must outlive this.
    // `asWritten` takes the game to the letter, also where its authors plainly meant otherwise.
    GameReader(std::filesystem::path dataDir, std::filesystem::path projectRoot,
               std::span<const TreeEntry> known = {}, bool asWritten = false);

    [[nodiscard]] const std::filesystem::path& dataDir() const { return resolver_.root(); }
    [[nodiscard]] const std::filesystem::path& projectRoot() const { return projectRoot_; }

    // The file that a path of the game's text means; empty when unsafe or ambiguous.
    [[nodiscard]] const std::filesystem::path& resolve(std::string_view text) {
        return resolver_.resolve(text);
    }

    // Present and no directory. Throws ("status").
    [[nodiscard]] bool isFile(const std::filesystem::path& path) const;
    // The same, but no link either.
    [[nodiscard]] bool isUnlinkedFile(const std::filesystem::path& path) const;

    // `path` relative to the project root, both in canonical form, generic UTF-8; the path itself
    // where they share no root. Throws ("weakly_canonical") where one has no such form.
    [[nodiscard]] std::string relativeToProject(const std::filesystem::path& path) const;

    // The file's lines; the reference holds until release(path).
    [[nodiscard]] const TextFile& lines(const std::filesystem::path& path);
    // Frees the lines of a file that no later pass wants.
    void release(const std::filesystem::path& path);

    // All models in registry order, and all stages in the order of sets and "file" lines. Read at
    // the first call; throw ("exists", "status", "weakly_canonical") for a file-system error other
    // than absence.
    [[nodiscard]] const std::vector<ModelDef>& models();
    [[nodiscard]] const std::vector<StageDef>& stages();

    [[nodiscard]] bool asWritten() const { return asWritten_; }
    [[nodiscard]] Reading newReading() const { return Reading(asWritten_); }
    // Adds what a reading of the file has mended; lines that are known are not added again.
    void collect(const std::filesystem::path& path, std::span<const MendedLine> mended);
    // All so far: by the file, relative to the project root, and then by line.
    [[nodiscard]] const std::map<std::string, std::vector<MendedLine>>& mendedLines() const {
        return mendedLines_;
    }

  private:
    [[nodiscard]] const std::filesystem::path& canonicalFolder(
        const std::filesystem::path& folder) const;
    [[nodiscard]] const std::filesystem::path& canonicalParent(
        const std::filesystem::path& path) const;

    PathResolver resolver_;
    std::filesystem::path projectRoot_;
    // By native path.
    template <typename Value>
    using ByPath = std::unordered_map<std::filesystem::path::string_type, Value>;
    mutable ByPath<std::filesystem::path> canonicalFolders_;
    ByPath<TextFile> files_;
    std::optional<std::vector<ModelDef>> models_;
    std::optional<std::vector<StageDef>> stages_;
    bool asWritten_;
    std::map<std::string, std::vector<MendedLine>> mendedLines_;
};

}  // namespace tindrel
