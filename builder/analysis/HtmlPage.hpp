#pragma once

// What all sections of the HTML report are made of.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "analysis/CommandRegistry.hpp"
#include "analysis/HtmlText.hpp"
#include "analysis/ProjectAnalysis.hpp"
#include "platform/OutputFile.hpp"

namespace tindrel {

struct StatusLook {
    std::string_view tone;  // class of the style sheet
    std::string_view label;
    std::string_view many, one;  // of lines: "run as written", "runs as written"
    [[nodiscard]] std::string_view said(std::uint64_t count) const {
        return count == 1 ? one : many;
    }
};
[[nodiscard]] const StatusLook& lookOf(CompatStatus status);

class HtmlPage {
  public:
    HtmlPage(OutputFile& out, const ProjectScan& project, const DataLinks& links)
        : out_(out), project_(project), links_(links) {}

    [[nodiscard]] OutputFile& out() { return out_; }

    // `title` and `lead` are markup.
    void openSection(std::string_view id, std::string_view title, std::string_view lead);
    // A line that unfolds: `count` of `below`, on a scale up to `most`. Its name is code, or a
    // sentence with code between backquotes.
    void openRow(const StatusLook& look, std::string_view name, bool mono, std::uint64_t count,
                 std::uint64_t most, std::string_view below);
    void openFold(std::string_view title, std::size_t count, bool isOpen = false);
    // What a list of `total` leaves out.
    void writeRest(std::uint64_t total, std::size_t shown, std::string_view what);

    // The file's name as a link to it, where the page reaches it.
    void writeFile(const SourceFile& file);
    // The same for a path relative to the project root, in generic form.
    void writeFile(std::string_view sourceFile);

  private:
    OutputFile& out_;
    const ProjectScan& project_;
    const DataLinks& links_;
};

// The text as markup, with what stands between backquotes as code.
[[nodiscard]] std::string markCode(std::string_view text);

}  // namespace tindrel
