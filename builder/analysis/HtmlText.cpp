#include "analysis/HtmlText.hpp"

#include <algorithm>
#include <utility>

#include "PathEncoding.hpp"
#include "reader/Tokens.hpp"

namespace tindrel {
namespace fs = std::filesystem;

std::string escapeHtml(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size() + text.size() / 8);
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            case '\'':
                escaped += "&#39;";
                break;
            default:
                // Control characters have no place in a page, not even escaped.
                if (static_cast<unsigned char>(c) < 0x20 && !isSpace(c)) {
                    escaped += "\xEF\xBF\xBD";
                } else {
                    escaped += c;
                }
        }
    }
    return escaped;
}

std::string escapeHtmlPath(std::string_view text) {
    std::string escaped;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("/\\"), text.size() - 1) + 1;
        escaped += escapeHtml(text.substr(0, end));
        text.remove_prefix(end);
        if (!text.empty()) escaped += "<wbr>";
    }
    return escaped;
}

std::string quoteCode(std::string_view text) {
    constexpr std::size_t kMostShown = 100;
    std::string shown(text.substr(0, kMostShown));
    while (shown.size() < text.size() && !shown.empty() &&
           (static_cast<unsigned char>(text[shown.size()]) & 0xC0U) == 0x80U) {
        shown.pop_back();
    }
    if (shown.size() < text.size()) shown += "...";
    std::replace(shown.begin(), shown.end(), '`', '\'');
    return '`' + shown + '`';
}

std::string encodeUrl(const fs::path& path) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    constexpr std::string_view kPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    std::string url;
    for (const char8_t unit : path.generic_u8string()) {
        const auto byte = static_cast<unsigned char>(unit);
        if (kPlain.find(static_cast<char>(byte)) != std::string_view::npos) {
            url += static_cast<char>(byte);
        } else {
            url += {'%', kHex[byte >> 4U], kHex[byte & 15U]};
        }
    }
    return url;
}

std::string groupDigits(std::uint64_t value) {
    std::string digits = std::to_string(value);
    for (std::size_t at = digits.size(); at > 3;) {
        at -= 3;
        digits.insert(at, 1, ',');
    }
    return digits;
}

std::string counted(std::uint64_t count, std::string_view one, std::string_view many) {
    return groupDigits(count).append(" ").append(count == 1 ? one : many);
}

DataLinks::DataLinks(const ProjectScan& project, fs::path base)
    : project_(project), base_(std::move(base)) {}

std::string DataLinks::to(const fs::path& file) const {
    const fs::path relative = file.lexically_relative(project_.dataDir);
    if (base_.empty() || relative.empty() || *relative.begin() == "..") return {};
    return encodeUrl(base_ / relative);
}

std::string DataLinks::toSource(std::string_view sourceFile) const {
    return to(project_.root / PathEncoding::path(sourceFile));
}

}  // namespace tindrel
