#pragma once

// The effects that a game's tables and scripts name.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "AudioSystem.hpp"

namespace port {

class SoundEffects {
  public:
    // Names are looked for below this folder from now on.
    void open(const std::filesystem::path& dataRoot);

    // The file of that name; empty for one that is not there. Lasts until the next name is asked
    // for. The disk is asked once for a name.
    [[nodiscard]] const std::filesystem::path& fileOf(std::string_view name);

    // Plays the file of that name. One that is not there is silent; for one that does not play,
    // `diagnostic` and the reason go to the error stream.
    void play(AudioSystem& audio, std::string_view name, std::string_view diagnostic);

    // Is told of each name that is not there or does not decode, whatever the device does; null for
    // nobody.
    void watchMissing(std::function<void(std::string_view)> watch) { missing_ = std::move(watch); }

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const {
            return std::hash<std::string_view>()(name);
        }
    };

    [[nodiscard]] std::filesystem::path find(std::string_view name) const;

    std::filesystem::path dataRoot_;
    // Where names were found; empty for what is not there. The texts are copies, since those that
    // scripts make do not last.
    std::unordered_map<std::string, std::filesystem::path, Hash, std::equal_to<>> files_;
    std::function<void(std::string_view)> missing_;
    std::size_t bytes_ = 0;  // that the names take
};

}  // namespace port
