// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <thread>

namespace tessaloom::test {
namespace {

using Milliseconds = std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

int checked(int result, const char* what) {
    if (result < 0) throw std::system_error(errno, std::generic_category(), what);
    return result;
}

std::vector<char*> pointersTo(std::vector<std::string>& strings) {
    std::vector<char*> pointers;
    pointers.reserve(strings.size() + 1);
    for (std::string& string : strings)
        pointers.push_back(string.data());
    pointers.push_back(nullptr);
    return pointers;
}

// The child's side of the fork: nothing here may allocate, since other threads may have held the heap's lock.
[[noreturn]] void becomeProgram(char* const* command, char** environment, int output, int errors,
                                int failure) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    dup2(output, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    execvpe(command[0], command, environment);
    const int reason = errno;
    const ssize_t written = write(failure, &reason, sizeof reason);
    _exit(written == sizeof reason ? 127 : 126);
}

pid_t startProgram(std::vector<std::string> command, const Environment& environment, int output, int errors) {
    std::vector<std::string> assignments;
    for (const auto& [name, value] : environment)
        assignments.emplace_back(name).append(1, '=').append(value);
    const std::vector<char*> arguments = pointersTo(command);
    std::vector<char*> variables = pointersTo(assignments);

    // Closed by a successful exec; otherwise it brings the reason.
    std::array<int, 2> failure{};
    checked(pipe2(failure.data(), O_CLOEXEC), "pipe2");
    const pid_t id = fork();
    if (id == 0) becomeProgram(arguments.data(), variables.data(), output, errors, failure[1]);
    int reason = id < 0 ? errno : 0;
    close(failure[1]);
    const bool failed = id < 0 || read(failure[0], &reason, sizeof reason) == sizeof reason;
    close(failure[0]);
    if (failed) {
        if (id > 0) waitpid(id, nullptr, 0);
        throw std::system_error(reason, std::generic_category(), command.front());
    }
    return id;
}

// Readable once the process has ended. By system call: the C library's header can't be used from C++
// everywhere.
int openHandle(pid_t id) {
    return checked(static_cast<int>(syscall(SYS_pidfd_open, id, 0)), "pidfd_open");
}

std::string contents(int descriptor) {
    std::string text;
    std::array<char, 4096> part{};
    ssize_t count = 0;
    while ((count = pread(descriptor, part.data(), part.size(), static_cast<off_t>(text.size()))) > 0) {
        text.append(part.data(), static_cast<std::size_t>(count));
    }
    return text;
}

}  // namespace

Environment currentEnvironment() {
    Environment result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view assignment = *entry;
        const auto equals = assignment.find('=');
        if (equals == std::string_view::npos) continue;
        result.emplace(assignment.substr(0, equals), assignment.substr(equals + 1));
    }
    return result;
}

ChildProcess::Descriptor::~Descriptor() {
    close(number_);
}

ChildProcess::ChildProcess(const std::vector<std::string>& command, const Environment& environment)
    : output_(checked(memfd_create("output", MFD_CLOEXEC), "memfd_create")),
      errors_(checked(memfd_create("errors", MFD_CLOEXEC), "memfd_create")),
      id_(startProgram(command, environment, output_.number(), errors_.number())),
      handle_(openHandle(id_)) {}

ChildProcess::~ChildProcess() {
    signal(SIGTERM);
    if (!waitForExit(std::chrono::seconds(2))) signal(SIGKILL);
    kill(-id_, SIGKILL);
    waitForExit(std::chrono::seconds(2));
}

bool ChildProcess::running() {
    return !waitForExit(Milliseconds(0));
}

void ChildProcess::signal(int number) {
    // Its id stays its own until waitForExit has collected it.
    if (!exitStatus_) kill(id_, number);
}

std::optional<int> ChildProcess::waitForExit(Milliseconds limit) {
    if (exitStatus_) return exitStatus_;
    pollfd ended{handle_.number(), POLLIN, 0};
    if (poll(&ended, 1, static_cast<int>(limit.count())) <= 0) return std::nullopt;
    int status = 0;
    if (waitpid(id_, &status, 0) != id_) return std::nullopt;
    exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return exitStatus_;
}

bool ChildProcess::waitForOutput(std::string_view text, Milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    while (true) {
        const bool over = !running() || Clock::now() >= deadline;
        if (output().find(text) != std::string::npos) return true;
        if (over) return false;
        std::this_thread::sleep_for(Milliseconds(5));
    }
}

std::string ChildProcess::output() const {
    return contents(output_.number());
}

std::string ChildProcess::errors() const {
    return contents(errors_.number());
}

}  // namespace tessaloom::test
