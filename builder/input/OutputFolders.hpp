#pragma once

// The folders that a container's names make below an output.

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unordered_set>

namespace tindrel {

enum class FolderProblem {
    kNone,
    kLink,     // one of the way is a link, which may lead elsewhere
    kTooMany,  // more would be made than the limit allows
    kFailed,   // see error()
};

// Each is looked at before it is trusted: a real directory, no link, below folders of which that is
// known as well, so that nothing is written elsewhere. A folder costs one look however many files
// it gets, and a file looks at no more folders than its way has that no file before it had.
class OutputFolders {
  public:
    OutputFolders(std::filesystem::path output, std::uint64_t limit)
        : output_(std::move(output)), limit_(limit) {}

    // Makes `folder`, a safe and normal way below the output.
    [[nodiscard]] FolderProblem prepare(const std::filesystem::path& folder);

    [[nodiscard]] const std::error_code& error() const { return error_; }
    // How many folders the disk was asked about.
    [[nodiscard]] std::uint64_t looks() const { return looks_; }

  private:
    using Native = std::filesystem::path::string_type;
    using NativeView = std::basic_string_view<std::filesystem::path::value_type>;

    [[nodiscard]] FolderProblem makeOne(NativeView below);

    std::filesystem::path output_;
    std::uint64_t limit_;
    std::uint64_t made_ = 0;
    std::uint64_t looks_ = 0;
    std::error_code error_;
    std::unordered_set<Native> known_;
};

}  // namespace tindrel
