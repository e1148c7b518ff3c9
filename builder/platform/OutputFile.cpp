#include "platform/OutputFile.hpp"

#include <cerrno>
#include <system_error>

#include "platform/FileStatus.hpp"

namespace tindrel {
namespace {

constexpr std::size_t kBufferBytes = 1U << 18U;

[[noreturn]] void fail(const char* operation, const std::filesystem::path& path, int error) {
    throw std::filesystem::filesystem_error(operation, path,
                                            std::error_code(error, std::generic_category()));
}

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& path, LineEnds ends) : path_(path) {
    const bool asGiven = ends == LineEnds::kAsGiven;
    errno = 0;
#ifdef _WIN32
    file_.reset(_wfopen(path.c_str(), asGiven ? L"wb" : L"w"));
#else
    file_.reset(std::fopen(path.c_str(), asGiven ? "wb" : "w"));
#endif
    if (!file_ && isDiskFailure(std::error_code(errno, std::generic_category()))) {
        fail("open", path, errno);
    }
    if (file_) {
        std::setvbuf(file_.get(), nullptr, _IONBF, 0);
        buffer_.reserve(kBufferBytes);
    }
}

OutputFile::~OutputFile() {
    if (file_ && !buffer_.empty()) std::fwrite(buffer_.data(), 1, buffer_.size(), file_.get());
}

OutputFile& OutputFile::operator<<(std::string_view text) {
    if (!file_) return *this;
    if (buffer_.size() + text.size() > kBufferBytes) flush();
    buffer_ += text;
    return *this;
}

void OutputFile::flush() {
    if (buffer_.empty()) return;
    errno = 0;
    const std::size_t written = std::fwrite(buffer_.data(), 1, buffer_.size(), file_.get());
    const bool complete = written == buffer_.size();
    buffer_.clear();
    if (!complete) fail("write", path_, errno != 0 ? errno : EIO);
}

void OutputFile::close() {
    if (!file_) return;
    flush();
    errno = 0;
    if (std::fclose(file_.release()) != 0) fail("write", path_, errno != 0 ? errno : EIO);
}

}  // namespace tindrel
