#pragma once

// What authors plainly meant where their lines, taken to the letter, lose it. Each mend is a row of
// one table; whoever reads such a line asks its Reading whether the mend holds.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <tuple>
#include <vector>

namespace tindrel {

enum class Mend : std::uint8_t {
    kBlockEnd,
    kZeroAttack,
    kBoxField,
    kPlayerSpawn,
    kWholeCall,
    kMacroComment,
    kIncludeComment,
    kDeclarators,
    kStep,
    kUndefine,
    kFunction,
};
inline constexpr std::size_t kMendCount = static_cast<std::size_t>(Mend::kFunction) + 1;

struct MendRow {
    Mend mend;
    std::string_view name;
    std::string_view written;
    std::string_view readAs;
    std::string_view why;  // what the letter loses
};

// One row for each Mend, in the order of the enumeration.
[[nodiscard]] std::span<const MendRow> mends();
[[nodiscard]] const MendRow& rowOf(Mend mend);

// "bbox.position.x" is judged as "bbox", "attack.size.z.1" as "attack"; empty for a word that no
// mend reads as a field of a box.
[[nodiscard]] std::string_view boxOfField(std::string_view key);

struct MendedLine {
    std::uint64_t line = 0;  // from 1
    Mend mend{};
    bool operator==(const MendedLine&) const = default;
    bool operator<(const MendedLine& other) const {
        return std::tie(line, mend) < std::tie(other.line, other.mend);
    }
};

// One file's reading: to the letter or mended, and which lines were.
class Reading {
  public:
    explicit Reading(bool asWritten = false) : asWritten_(asWritten) {}

    [[nodiscard]] bool asWritten() const { return asWritten_; }
    // Whether a line to which the mend applies is mended; it is noted if so.
    [[nodiscard]] bool mends(Mend mend, std::uint64_t line) {
        if (!asWritten_) lines_.push_back({line, mend});
        return !asWritten_;
    }
    [[nodiscard]] const std::vector<MendedLine>& lines() const { return lines_; }

  private:
    bool asWritten_;
    std::vector<MendedLine> lines_;
};

}  // namespace tindrel
