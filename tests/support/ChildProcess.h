// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom::test {

/// Variable names and their values.
using Environment = std::map<std::string, std::string>;

/// This process's own environment.
Environment currentEnvironment();

/// A program that runs no longer than this object lives. Its output goes to memory, so it never blocks on a
/// full pipe and may be read at any time. It is told to end when the thread that started it dies.
/// Not thread-safe.
class ChildProcess {
  public:
    /// Starts `command[0]`, looked up in this process's PATH. Throws std::system_error when there is no such
    /// program or it can't be started.
    ChildProcess(const std::vector<std::string>& command, const Environment& environment);
    /// SIGTERM, two seconds of grace, then SIGKILL to it and what it left in its process group.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t id() const { return id_; }
    bool running();

    /// Nothing happens when the process has already ended.
    void signal(int number);

    /// The exit status, 128 + N for one ended by signal N, nothing when the time has passed first.
    std::optional<int> waitForExit(std::chrono::milliseconds limit);

    /// Waits until its output contains `text`: false when the time passes or the process ends without it.
    bool waitForOutput(std::string_view text, std::chrono::milliseconds limit);

    /// All it has written so far.
    std::string output() const;
    std::string errors() const;

  private:
    class Descriptor {
      public:
        explicit Descriptor(int number) : number_(number) {}
        ~Descriptor();
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;
        int number() const { return number_; }

      private:
        int number_;
    };

    Descriptor output_;
    Descriptor errors_;
    pid_t id_;
    Descriptor handle_;
    std::optional<int> exitStatus_;
};

}  // namespace tessaloom::test
