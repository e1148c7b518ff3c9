#include "platform/ProcessPosix.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "platform/Process.hpp"

namespace tindrel {
namespace fs = std::filesystem;
namespace {

class SpawnActions {
  public:
    SpawnActions() { posix_spawn_file_actions_init(&actions_); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }

    [[nodiscard]] posix_spawn_file_actions_t* get() { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

std::vector<char*> utf8Environment() {
    static char locale[] = "LC_ALL=C.UTF-8";
    std::vector<char*> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (!std::string_view(*variable).starts_with("LC_ALL=")) variables.push_back(*variable);
    }
    variables.push_back(locale);
    variables.push_back(nullptr);
    return variables;
}

bool isExecutableFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

}  // namespace

pid_t startProcess(const std::vector<std::string>& command, const StartOptions& options) {
    if (command.empty()) return -1;
    // What we have written so far stands before what the child writes.
    std::cout.flush();
    std::fflush(stdout);
    // An inherited "ignore" would reap the child before its code could be taken.
    std::signal(SIGCHLD, SIG_DFL);

    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);

    SpawnActions actions;
    if (options.standardOutput >= 0) {
        posix_spawn_file_actions_adddup2(actions.get(), options.standardOutput, STDOUT_FILENO);
    }
    if (options.emptyInput) {
        posix_spawn_file_actions_addopen(actions.get(), STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
    std::vector<char*> variables;
    if (options.utf8Locale) variables = utf8Environment();
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    if (options.ownSession) posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t process = -1;
    const int error =
        ::posix_spawnp(&process, arguments[0], actions.get(), &attributes, arguments.data(),
                       options.utf8Locale ? variables.data() : environ);
    posix_spawnattr_destroy(&attributes);
    return error == 0 ? process : -1;
}

int waitForProcess(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) return 1;
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

std::string runCommandOutput(const std::vector<std::string>& command, int& code) {
    code = -1;
    int ends[2];
    if (::pipe(ends) != 0) return {};
    for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
    const pid_t process = startProcess(command, {.standardOutput = ends[1]});
    ::close(ends[1]);
    std::string output;
    if (process >= 0) {
        char chunk[4096];
        ssize_t size = 0;
        while ((size = ::read(ends[0], chunk, sizeof chunk)) != 0) {
            if (size > 0) {
                output.append(chunk, static_cast<std::size_t>(size));
            } else if (errno != EINTR) {
                break;
            }
        }
        code = waitForProcess(process);
    }
    ::close(ends[0]);
    return output;
}

fs::path searchProgram(std::string_view name) {
    const char* value = std::getenv("PATH");
    if (name.empty() || value == nullptr) return {};
    std::string_view rest = value;
    while (true) {
        const std::size_t end = rest.find(':');
        // An empty element means the working directory.
        const fs::path candidate = fs::path(rest.substr(0, end)) / name;
        if (isExecutableFile(candidate)) {
            std::error_code error;
            fs::path full = fs::absolute(candidate, error);
            return error ? candidate : full;
        }
        if (end == std::string_view::npos) return {};
        rest.remove_prefix(end + 1);
    }
}

fs::path builderFolder() {
    std::error_code error;
    const fs::path self = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::current_path(error) : self.parent_path();
}

fs::path environmentPath(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? fs::path{} : fs::path(value);
}

unsigned long processId() {
    return static_cast<unsigned long>(::getpid());
}

}  // namespace tindrel
