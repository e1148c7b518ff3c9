#include "input/OutputFolders.hpp"

#include <vector>

#include "platform/LinkStatus.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

// Far more than games have; a hostile container must not fill the memory with its folders' names.
constexpr std::size_t kRemembered = 4096;

}  // namespace

FolderProblem OutputFolders::prepare(const fs::path& folder) {
    const NativeView whole = folder.native();
    // The ends of the ways to look at, the innermost folder first.
    std::vector<std::size_t> unknown;
    for (std::size_t end = whole.size(); end > 0 && end != NativeView::npos;) {
        if (known_.contains(Native(whole.substr(0, end)))) break;
        unknown.push_back(end);
        end = whole.rfind(fs::path::preferred_separator, end - 1);
    }
    for (; !unknown.empty(); unknown.pop_back()) {
        const NativeView below = whole.substr(0, unknown.back());
        const FolderProblem problem = makeOne(below);
        if (problem != FolderProblem::kNone) return problem;
        if (known_.size() == kRemembered) known_.clear();
        known_.emplace(below);
    }
    return FolderProblem::kNone;
}

FolderProblem OutputFolders::makeOne(NativeView below) {
    ++looks_;
    const fs::path folder = output_ / below;
    error_.clear();
    const fs::file_type type = linkStatus(folder, error_).type();
    if (type == fs::file_type::symlink) return FolderProblem::kLink;
    if (type == fs::file_type::not_found) {
        // A short name makes many folders, each a block of the disk, so they are counted too.
        if (++made_ > limit_) return FolderProblem::kTooMany;
        fs::create_directory(folder, error_);
    } else if (!error_ && type != fs::file_type::directory) {
        error_ = std::make_error_code(std::errc::not_a_directory);
    }
    return error_ ? FolderProblem::kFailed : FolderProblem::kNone;
}

}  // namespace tindrel
