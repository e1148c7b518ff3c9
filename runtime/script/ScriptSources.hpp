#pragma once

// The files that scripts stand in, each read and cut into directives and plain lines once.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ScriptMacros.hpp"
#include "ScriptPaths.hpp"

namespace port::script {

class ScriptSource;

enum class BlockKind : std::uint8_t {
    Lines,
    IfDefined,
    IfUndefined,
    Else,
    EndIf,
    Define,
    Undefine,
    Include,
    Import,
    Unknown,
};

// Plain lines that follow each other, or a directive.
struct SourceBlock {
    BlockKind kind{};
    std::uint32_t line = 0;   // the first, from 1
    std::uint32_t lines = 0;  // how many
    std::string_view text{};  // of all lines, each with its line break
    std::string_view name{};  // of a directive, as written
    std::string_view rest{};  // what follows the name; of an include that was resolved its path
    // Of an include.
    bool resolved = false;
    bool mended = false;             // a comment behind the path was cut off
    ScriptSource* source = nullptr;  // the file that is meant; none if the path is not safe
};

// A text and the blocks that it is cut into. A line break that its last line lacks is put there.
class ScriptSource {
  public:
    // A file that cannot be read.
    explicit ScriptSource(std::filesystem::path file);
    ScriptSource(std::filesystem::path file, std::string text);
    ~ScriptSource() = default;
    ScriptSource(const ScriptSource&) = delete;
    ScriptSource& operator=(const ScriptSource&) = delete;
    ScriptSource(ScriptSource&&) = delete;
    ScriptSource& operator=(ScriptSource&&) = delete;

    const std::filesystem::path path;
    const std::string folder;  // of the file, in UTF-8
    const bool readable;
    std::vector<SourceBlock> blocks;

  private:
    const std::string text_;
};

// The script files below one root, and how they are taken.
class ScriptSources {
  public:
    explicit ScriptSources(std::filesystem::path root, bool takeAsWritten = false)
        : paths(std::move(root)), asWritten(takeAsWritten) {}
    // A file, readable or not. The answer never expires.
    ScriptSource& source(const std::filesystem::path& path);
    // Finds the file that an include of `by` means, if that was not done yet.
    void resolve(const ScriptSource& by, SourceBlock& include);

    ScriptPaths paths;
    const bool asWritten;

  private:
    ScriptSource* find(const ScriptSource& by, std::string_view raw);

    std::unordered_map<std::string, std::unique_ptr<ScriptSource>> sources_;  // by UTF-8 path
    TextMap<ScriptSource*> included_;  // by the includer's folder and path as written
    std::string key_;
};

}  // namespace port::script
