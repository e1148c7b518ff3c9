#include "platform/OutputFile.hpp"

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "platform/FileStatus.hpp"

namespace tindrel {
namespace {

constexpr std::size_t kBufferBytes = 1U << 18U;

[[noreturn]] void fail(const char* operation, const std::filesystem::path& path, int error) {
    throw std::filesystem::filesystem_error(operation, path,
                                            std::error_code(error, std::generic_category()));
}

std::FILE* openFile(const std::filesystem::path& path, const char* mode) {
#ifdef _WIN32
    return _wfopen(path.c_str(), std::wstring(mode, mode + std::strlen(mode)).c_str());
#else
    return std::fopen(path.c_str(), mode);
#endif
}

// Files are opened as bytes, since places in them could not be told otherwise.
void spellLineEnds([[maybe_unused]] std::string& text) {
#ifdef _WIN32
    std::string spelled;
    for (const char c : text) {
        if (c == '\n') spelled += '\r';
        spelled += c;
    }
    text = std::move(spelled);
#endif
}

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& path, LineEnds ends)
    : path_(path), ends_(ends) {
    std::error_code unknown;
    if (std::filesystem::is_regular_file(path, unknown)) file_.reset(openFile(path, "r+b"));
    unchanged_ = file_ != nullptr;
    errno = 0;
    if (!file_) file_.reset(openFile(path, "wb"));
    if (!file_ && isDiskFailure(std::error_code(errno, std::generic_category()))) {
        fail("open", path, errno);
    }
    if (file_) {
        std::setvbuf(file_.get(), nullptr, _IONBF, 0);
        buffer_.reserve(kBufferBytes);
    }
}

OutputFile::~OutputFile() {
    try {
        close();
    } catch (const std::filesystem::filesystem_error&) {
    }
}

OutputFile& OutputFile::operator<<(std::string_view text) {
    if (!file_) return *this;
    if (buffer_.size() + text.size() > kBufferBytes) flush();
    buffer_ += text;
    return *this;
}

bool OutputFile::standsNext(std::string_view text) {
    std::fpos_t start{};
    if (std::fgetpos(file_.get(), &start) != 0) return false;
    before_.resize(text.size());
    const std::size_t read = std::fread(before_.data(), 1, before_.size(), file_.get());
    if (read == text.size() && before_ == text) return true;
    std::fsetpos(file_.get(), &start);
    return false;
}

void OutputFile::flush() {
    if (buffer_.empty()) return;
    if (ends_ == LineEnds::kOfSystem) spellLineEnds(buffer_);
    size_ += buffer_.size();
    unchanged_ = unchanged_ && standsNext(buffer_);
    errno = 0;
    const bool complete =
        unchanged_ || std::fwrite(buffer_.data(), 1, buffer_.size(), file_.get()) == buffer_.size();
    buffer_.clear();
    if (!complete) fail("write", path_, errno != 0 ? errno : EIO);
}

void OutputFile::close() {
    if (!file_) return;
    flush();
    errno = 0;
    if (std::fclose(file_.release()) != 0) fail("write", path_, errno != 0 ? errno : EIO);
    // The rest of a longer text that stood there.
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path_, error);
    if (error || size <= size_) return;
    std::filesystem::resize_file(path_, size_, error);
    if (error) throw std::filesystem::filesystem_error("write", path_, error);
}

}  // namespace tindrel
