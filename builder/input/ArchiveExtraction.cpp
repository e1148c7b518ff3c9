#include "input/ArchiveExtraction.hpp"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <system_error>

#include "platform/FileStatus.hpp"
#include "platform/Interrupt.hpp"
#include "platform/LinkStatus.hpp"
#include "platform/RemoveTree.hpp"
#include "reader/DataPaths.hpp"
#include "reader/TreeWalk.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

using Clock = std::chrono::steady_clock;

// What a tool has left so far, held against the limits.
class Tally {
  public:
    explicit Tally(const ExtractionLimits& limits) : limits_(limits) {}

    // Empty while all is well, else the text for the user.
    [[nodiscard]] std::string add(const TreeEntry& entry) {
        if (entry.directory) {
            ++folders_;
        } else {
            ++files_;
            std::error_code error;
            const std::uintmax_t size = entry.symlink ? 0 : fs::file_size(entry.path(), error);
            if (!error) bytes_ += size;
        }
        if (files_ > limits_.files || folders_ > limits_.files) {
            return "arquivo excede limite defensivo de arquivos" +
                   above(std::max(files_, folders_), limits_.files);
        }
        if (bytes_ > limits_.bytes) {
            return "arquivo excede limite defensivo de extracao" + above(bytes_, limits_.bytes);
        }
        return {};
    }

  private:
    static std::string above(std::uint64_t value, std::uint64_t limit) {
        return " (" + std::to_string(value) + " acima de " + std::to_string(limit) + ')';
    }

    ExtractionLimits limits_;
    std::uint64_t files_ = 0;
    std::uint64_t folders_ = 0;
    std::uint64_t bytes_ = 0;
};

// Looks now and then at what a running tool has written, so that an archive that unpacks without
// end is stopped before the disk is full. Takes a tenth of the time at most.
class GrowthWatch {
  public:
    GrowthWatch(fs::path folder, const ExtractionLimits& limits)
        : folder_(std::move(folder)), limits_(limits) {}

    [[nodiscard]] bool isWithinLimits() {
        const Clock::time_point start = Clock::now();
        if (start < next_) return true;
        Tally tally(limits_);
        bool within = true;
        walkTree(folder_, [&](const TreeEntry& entry) {
            within = tally.add(entry).empty();
            return within ? WalkStep::Enter : WalkStep::Stop;
        });
        const Clock::time_point end = Clock::now();
        next_ = end + std::max<Clock::duration>(kInterval, (end - start) * 9);
        return within;
    }

  private:
    static constexpr std::chrono::milliseconds kInterval{500};

    fs::path folder_;
    ExtractionLimits limits_;
    Clock::time_point next_ = Clock::now() + kInterval;
};

// Archives carry permissions, even such as would hide their files from us.
void makeReadable(const TreeEntry& entry) {
    const fs::perms wanted =
        entry.directory ? fs::perms::owner_all : fs::perms::owner_read | fs::perms::owner_write;
    std::error_code error;
    const fs::perms now = linkStatus(entry.path(), error).permissions();
    if (!error && (now & wanted) != wanted) {
        fs::permissions(entry.path(), wanted, fs::perm_options::add, error);
    }
}

// Removes what must not be read from an archive: links, which may lead anywhere, and special files,
// which may never end. Empty when what is left is safe, else the text for the user.
std::string makeSafe(const fs::path& folder, const ExtractionLimits& limits, InterruptHold& hold) {
    std::string problem;
    Tally tally(limits);
    std::error_code ignored;
    fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
    walkTree(
        folder,
        [&](const TreeEntry& entry) {
            if (InterruptHold::isAwaited()) return WalkStep::Stop;
            if (entry.symlink || (!entry.directory && !entry.regularFile)) {
                std::error_code error;
                fs::remove(entry.path(), error);
                if (error)
                    problem = "falha removendo ligacao do arquivo: " + displayPath(entry.path());
            } else {
                makeReadable(entry);
                problem = tally.add(entry);
                if (!problem.empty()) {
                    problem += " em " + displayPath(entry.path().lexically_relative(folder));
                }
            }
            return problem.empty() ? WalkStep::Enter : WalkStep::Stop;
        },
        [&](const fs::path& unlisted, std::error_code) {
            problem = "falha lendo pasta extraida: " + displayPath(unlisted);
        });
    hold.letIn();
    return problem;
}

std::string failureText(ArchiveMethod method, int zip, int tar, int sevenZip) {
    const std::string last = std::to_string(tar) + '/' + std::to_string(sevenZip) + ')';
    if (method == ArchiveMethod::Rar) {
        return "RAR detectado pelo conteudo, mas tar.exe/7-Zip nao conseguiram extrair (codigos " +
               last + ". Instale 7-Zip ou extraia o RAR e selecione a pasta do jogo.";
    }
    return "PowerShell/tar.exe/7-Zip nao conseguiram extrair o arquivo (codigos " +
           std::to_string(zip) + '/' + last;
}

}  // namespace

bool extractArchive(const fs::path& archive, const fs::path& destination, ArchiveMethod method,
                    std::string& error, const ArchiveTools& tools, const ExtractionLimits& limits) {
    InterruptHold hold;
    std::error_code failure;
    fs::create_directories(destination, failure);
    if (failure) {
        error = "falha criando destino do arquivo: " + failure.message();
        return false;
    }

    const fs::path source = tindrel::absolute(archive);
    const fs::path target = tindrel::absolute(destination);
    struct {
        ArchiveTools::Call call;
        bool zipOnly;
        int code = -1;
    } chain[] = {{tools.zip, true}, {tools.tar, false}, {tools.sevenZip, false}};
    for (auto& tool : chain) {
        if (tool.zipOnly && method != ArchiveMethod::Zip) continue;
        const Command command = tool.call(source, target);
        if (command.empty()) continue;
        GrowthWatch growth(target, limits);
        tool.code = tools.run(command, [&growth] { return growth.isWithinLimits(); });
        hold.letIn();
        // After a failure, too: the next tool must not write through a link that this one left.
        error = makeSafe(target, limits, hold);
        if (!error.empty()) return false;
        if (tool.code == 0) return true;
    }
    error = failureText(method, chain[0].code, chain[1].code, chain[2].code);
    return false;
}

}  // namespace tindrel
