#pragma once

// Values as the HTML report writes them.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "reader/ProjectScan.hpp"

namespace tindrel {

// For element text and quoted attributes.
[[nodiscard]] std::string escapeHtml(std::string_view text);

// The same for a path, which may break behind its slashes rather than inside of words.
[[nodiscard]] std::string escapeHtmlPath(std::string_view text);

// At most 100 bytes of the text between backquotes, as sentences of the reports show code.
[[nodiscard]] std::string quoteCode(std::string_view text);

// A relative address of the path, percent-encoded, with forward slashes.
[[nodiscard]] std::string encodeUrl(const std::filesystem::path& path);

// 12345 as "12,345".
[[nodiscard]] std::string groupDigits(std::uint64_t value);

// "1 line", "2 lines".
[[nodiscard]] std::string counted(std::uint64_t count, std::string_view one, std::string_view many);

// Addresses of a project's data files, as seen from a page.
class DataLinks {
  public:
    // `base` leads from the page's folder to the data folder; empty when nothing does.
    DataLinks(const ProjectScan& project, std::filesystem::path base);

    // Empty for a file that the page cannot reach.
    [[nodiscard]] std::string to(const std::filesystem::path& file) const;
    // The same for a path relative to the project root, in generic form.
    [[nodiscard]] std::string toSource(std::string_view sourceFile) const;

  private:
    const ProjectScan& project_;
    std::filesystem::path base_;
};

}  // namespace tindrel
