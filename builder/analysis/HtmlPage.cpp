#include "analysis/HtmlPage.hpp"

#include <algorithm>
#include <array>

namespace tindrel {
namespace {

// By CompatStatus.
constexpr std::array<StatusLook, 5> kLooks = {{
    {"ok", "Runs", "run as written", "runs as written"},
    {"part", "Partly", "run in part", "runs in part"},
    {"bad", "Not run", "do not run", "does not run"},
    {"skip", "Not needed", "not needed", "not needed"},
    {"odd", "Not known", "are not known", "is not known"},
}};

}  // namespace

const StatusLook& lookOf(CompatStatus status) {
    return kLooks[std::min(static_cast<std::size_t>(status), kLooks.size() - 1)];
}

void HtmlPage::openSection(std::string_view id, std::string_view title, std::string_view lead) {
    out_ << "<section id=\"" << id << "\">\n<h2>" << title << "</h2>\n<p class=\"lead\">" << lead
         << "</p>\n";
}

void HtmlPage::openRow(const StatusLook& look, std::string_view name, bool mono,
                       std::uint64_t count, std::uint64_t most, std::string_view below) {
    out_ << "<details class=\"row " << look.tone << "\"><summary><span class=\"name"
         << (mono ? "" : " text") << "\">" << (mono ? escapeHtml(name) : markCode(name))
         << "</span><span class=\"chip\">" << look.label
         << "</span><span class=\"meter\" aria-hidden=\"true\"><i style=\"width:"
         << count * 100 / std::max<std::uint64_t>(most, 1)
         << "%\"></i></span><span class=\"count\">" << groupDigits(count) << "<small>" << below
         << "</small></span></summary>\n<div class=\"body\">\n";
}

void HtmlPage::openFold(std::string_view title, std::size_t count, bool isOpen) {
    out_ << "<details class=\"fold\"" << (isOpen ? " open" : "") << "><summary>"
         << escapeHtml(title) << " <small>" << groupDigits(count) << "</small></summary>\n";
}

void HtmlPage::writeRest(std::uint64_t total, std::size_t shown, std::string_view what) {
    if (total <= shown) return;
    out_ << "<p class=\"rest\">and " << groupDigits(total - shown) << " more " << what << "</p>\n";
}

void HtmlPage::writeFile(const SourceFile& file) {
    const std::string url = links_.to(project_.root / file.relative);
    if (!url.empty()) out_ << "<a href=\"" << url << "\">";
    out_ << "<code>" << escapeHtmlPath(file.display) << "</code>";
    if (!url.empty()) out_ << "</a>";
    if (!file.loaded) out_ << " <span class=\"chip skip\">not loaded</span>";
}

void HtmlPage::writeFile(std::string_view sourceFile) {
    const std::string url = links_.toSource(sourceFile);
    if (!url.empty()) out_ << "<a href=\"" << url << "\">";
    out_ << "<code>" << escapeHtmlPath(sourceFile) << "</code>";
    if (!url.empty()) out_ << "</a>";
}

std::string markCode(std::string_view text) {
    std::string html;
    bool open = false;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t mark = std::min(text.find('`', at), text.size());
        html += escapeHtml(text.substr(at, mark - at));
        if (mark < text.size() || open) html += open ? "</code>" : "<code>";
        open = !open && mark < text.size();
        at = mark + 1;
    }
    return html;
}

}  // namespace tindrel
