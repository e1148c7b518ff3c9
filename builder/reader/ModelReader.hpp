#pragma once

// models.txt and the entity files that it names.

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "reader/GameReader.hpp"
#include "reader/ModelDef.hpp"

namespace tindrel {

// What a "load" or "know" line of models.txt registers.
struct RegisteredModel {
    std::string_view name;  // empty where the path alone is given
    std::string_view path;  // as written
};
// Nothing for any other line. What is given points into the line's file.
[[nodiscard]] std::optional<RegisteredModel> registeredModel(const TextLine& line);

// The models in registry order; those of every text file with an animation where there is no
// usable registry. Throws ("exists", "status", "weakly_canonical",
// "recursive_directory_iterator") for a file-system error other than absence.
[[nodiscard]] std::vector<ModelDef> readModels(GameReader& game);

// One entity file, with `modelName` left empty. An unreadable file gives a model without
// animations.
[[nodiscard]] ModelDef readModelFile(GameReader& game, const std::filesystem::path& path);

// The same from the file's lines; `sourceFile` stays empty, and an empty `name` becomes `stem`.
// `reading` notes what is mended; without one the file's lines say how they are read.
[[nodiscard]] ModelDef parseModel(const TextFile& file, std::string_view stem, Reading& reading);
[[nodiscard]] inline ModelDef parseModel(const TextFile& file, std::string_view stem) {
    Reading reading(file.reading().asWritten());
    return parseModel(file, stem, reading);
}

// Whether a line of an entity file that begins with `key`, in lower case, is read at all.
[[nodiscard]] bool isModelKeyword(std::string_view key);

}  // namespace tindrel
