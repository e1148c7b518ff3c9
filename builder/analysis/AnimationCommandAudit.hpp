#pragma once

// The verdict on each "@cmd" line by itself: whether the port's script machine will execute that
// very call, bound to the frame that follows it.

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "analysis/ProjectAnalysis.hpp"
#include "analysis/ScriptScan.hpp"

namespace tindrel {

class AnimationCommandAuditor {
  public:
    explicit AnimationCommandAuditor(ScriptScanner& scanner) : scanner_(scanner) {}

    // Judges line `index` of `file`, which must be an "@cmd". `path` is the file on disk and
    // `source` its name in the record. Lines of one file are to be asked for in one go.
    [[nodiscard]] AnimationCommandAudit audit(const TextFile& file, std::size_t index,
                                              const std::filesystem::path& path,
                                              const SourceFile& source);

  private:
    // What stands around each line of the file that is being audited.
    struct Context {
        std::string_view helper;    // value of the last "animationscript" ahead of the line
        bool frameFollows = false;  // before the next animation
    };
    // The script that an "animationscript" line names.
    struct Helper {
        std::filesystem::path file;
        std::string fault;  // why it cannot be relied on; empty when it can
        std::shared_ptr<const ScriptReport> report;  // what the fault names
    };

    void readContext(const TextFile& file, const std::filesystem::path& path);
    [[nodiscard]] Helper& helperOf(std::string_view name);
    [[nodiscard]] std::string_view verdict(std::span<const std::string_view> tokens,
                                           std::string_view text, const Context& context,
                                           CompatStatus& status);

    ScriptScanner& scanner_;
    std::filesystem::path contextPath_;
    std::vector<Context> context_;
    std::map<std::string, Helper, std::less<>> helpers_;
};

// A literal, or a call of "null", "getlocalvar" or "getglobalvar" with a literal name: what a
// verified call may take as an argument.
[[nodiscard]] bool isVerifiedArgument(std::string_view text);

}  // namespace tindrel
