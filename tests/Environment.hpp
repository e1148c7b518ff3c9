#pragma once

#ifndef _WIN32
#include <sys/resource.h>
#endif

#include <cstdlib>
#include <optional>
#include <string>

namespace tindrel::test {

// Which variable names the folder of temporary files.
#ifdef _WIN32
inline constexpr const char* kTemporary = "TMP";
#else
inline constexpr const char* kTemporary = "TMPDIR";
#endif

// An environment variable that has its old value again at the end.
class Environment {
  public:
    Environment(const char* name, const std::string& value) : name_(name) {
        if (const char* before = std::getenv(name)) before_ = before;
        set(name, value);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() {
        if (before_) {
            set(name_, *before_);
        } else {
            unset(name_);
        }
    }

  private:
#ifdef _WIN32
    static void set(const char* name, const std::string& value) {
        ::_putenv_s(name, value.c_str());
    }
    static void unset(const char* name) {
        ::_putenv_s(name, "");
    }
#else
    static void set(const char* name, const std::string& value) {
        ::setenv(name, value.c_str(), 1);
    }
    static void unset(const char* name) {
        ::unsetenv(name);
    }
#endif

    const char* name_;
    std::optional<std::string> before_;
};

#ifdef _WIN32
// A folder that is being walked is no open file there.
struct FewOpenFiles {
    ~FewOpenFiles() {}
};
#else
// Few files can be open at once while this lives.
class FewOpenFiles {
  public:
    FewOpenFiles() {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        rlimit few = before_;
        few.rlim_cur = 20;
        ::setrlimit(RLIMIT_NOFILE, &few);
    }
    FewOpenFiles(const FewOpenFiles&) = delete;
    FewOpenFiles& operator=(const FewOpenFiles&) = delete;
    ~FewOpenFiles() { ::setrlimit(RLIMIT_NOFILE, &before_); }

  private:
    rlimit before_{};
};
#endif

}  // namespace tindrel::test
