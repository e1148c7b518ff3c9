#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/FileReplace.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    [[nodiscard]] int number() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    // False when the file system reports only now what it could not write.
    bool close() {
        const int number = number_;
        number_ = -1;
        return number < 0 || ::close(number) == 0;
    }

  private:
    int number_;
};

std::error_code lastError() {
    return {errno, std::generic_category()};
}

bool writeAll(int to, const char* bytes, ssize_t count) {
    while (count > 0) {
        const ssize_t written = ::write(to, bytes, static_cast<std::size_t>(count));
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes += written;
        count -= written;
    }
    return true;
}

bool copyByHand(int from, int to) {
    std::array<char, 1U << 16U> buffer{};
    while (true) {
        const ssize_t count = ::read(from, buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count == 0;
        if (!writeAll(to, buffer.data(), count)) return false;
    }
}

bool copyBytes(int from, int to, off_t size) {
    off_t done = 0;
#ifdef __linux__
    // The system copies without a detour through this program, or shares the blocks. What it does
    // not want to copy so, as between some file systems, it refuses.
    while (done < size) {
        const ssize_t count =
            ::copy_file_range(from, nullptr, to, nullptr, static_cast<std::size_t>(size - done), 0);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        done += count;
    }
#endif
    // Both descriptors stand where the system has left off.
    return (done == size && size > 0) || copyByHand(from, to);
}

}  // namespace

void copyFileOver(const fs::path& from, const fs::path& to, std::error_code& error) {
    fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
}

void copyNewFile(const fs::path& from, const fs::path& to, std::error_code& error) {
    error.clear();
    const Descriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!source.isOpen() || ::fstat(source.number(), &status) != 0) {
        error = lastError();
        return;
    }
    if (!S_ISREG(status.st_mode)) {
        error = std::make_error_code(std::errc::not_supported);
        return;
    }
    Descriptor target(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IWUSR));
    if (!target.isOpen()) {
        error = lastError();
        return;
    }
    const bool done = ::fchmod(target.number(), status.st_mode & 0777U) == 0 &&
                      copyBytes(source.number(), target.number(), status.st_size);
    if (!done) error = lastError();
#ifdef __APPLE__
    const timespec changed = status.st_mtimespec;
#else
    const timespec changed = status.st_mtim;
#endif
    // What cannot keep a time, as some shared folders, keeps its bytes all the same.
    const std::array<timespec, 2> times{timespec{0, UTIME_OMIT}, changed};
    static_cast<void>(::futimens(target.number(), times.data()));
    if (!target.close() && !error) error = lastError();
    if (error) ::unlink(to.c_str());
}

void removeAll(const fs::path& path, std::error_code& error) {
    fs::remove_all(path, error);
}

}  // namespace tindrel
