#pragma once

// Makes PAK files, honest ones and such as lie in a field.

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace tindrel::test {

// A field that is given overrides the honest value.
struct PakEntry {
    std::string name;
    std::string content;
    std::optional<std::uint32_t> recordLength{};
    std::optional<std::uint32_t> fileOffset{};
    std::optional<std::uint32_t> fileSize{};
};

inline void appendNumber(std::string& out, std::uint32_t value) {
    for (unsigned shift = 0; shift < 32; shift += 8) out += static_cast<char>(value >> shift);
}

inline std::string pakBytes(const std::vector<PakEntry>& entries,
                            std::optional<std::uint32_t> indexOffset = {}) {
    std::string pak = "PACK";
    appendNumber(pak, 0);
    std::string index;
    for (const PakEntry& entry : entries) {
        const auto length = static_cast<std::uint32_t>(12 + entry.name.size() + 1);
        appendNumber(index, entry.recordLength.value_or(length));
        appendNumber(index, entry.fileOffset.value_or(static_cast<std::uint32_t>(pak.size())));
        appendNumber(index,
                     entry.fileSize.value_or(static_cast<std::uint32_t>(entry.content.size())));
        index += entry.name;
        index += '\0';
        pak += entry.content;
    }
    const auto offset = indexOffset.value_or(static_cast<std::uint32_t>(pak.size()));
    pak += index;
    appendNumber(pak, offset);
    return pak;
}

// All files below `root`/data, in the order of their names.
inline std::string pakOfFolder(const std::filesystem::path& root) {
    std::vector<PakEntry> entries;
    for (const auto& found : std::filesystem::recursive_directory_iterator(root / "data")) {
        if (!found.is_regular_file()) continue;
        const std::u8string name = found.path().lexically_relative(root).generic_u8string();
        std::ifstream in(found.path(), std::ios::binary);
        entries.push_back({std::string(name.begin(), name.end()),
                           {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()}});
    }
    std::sort(entries.begin(), entries.end(),
              [](const PakEntry& left, const PakEntry& right) { return left.name < right.name; });
    return pakBytes(entries);
}

}  // namespace tindrel::test
