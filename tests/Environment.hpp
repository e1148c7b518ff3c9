#pragma once

#include <sys/resource.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace tindrel::test {

// An environment variable that has its old value again at the end.
class Environment {
  public:
    Environment(const char* name, const std::string& value) : name_(name) {
        if (const char* before = std::getenv(name)) before_ = before;
        ::setenv(name, value.c_str(), 1);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() {
        if (before_) {
            ::setenv(name_, before_->c_str(), 1);
        } else {
            ::unsetenv(name_);
        }
    }

  private:
    const char* name_;
    std::optional<std::string> before_;
};

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

}  // namespace tindrel::test
