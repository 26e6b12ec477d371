// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::test {

/// A private PipeWire server with its session manager, and one pair of virtual speakers. It has no microphone
/// and no camera unless a test makes one. It ends, with all it started, when this object does.
class SoundServer {
  public:
    /// `base` is the environment that programs are otherwise started with. Throws std::runtime_error when the
    /// server isn't up within ten seconds.
    explicit SoundServer(const Environment& base = currentEnvironment());

    /// What programs that are to find this server are to be started with.
    const Environment& environment() const { return environment_; }
    /// The server's socket.
    std::string socket() const;

    /// Ends the server; start() brings it back in the same place.
    void stop();
    void start();

  private:
    void writeConfiguration() const;
    void waitUntilReady();

    // Destroyed from the last to the first.
    TemporaryFolder folder_;
    Environment environment_;
    std::optional<ChildProcess> bus_;
    std::optional<ChildProcess> server_;
    std::optional<ChildProcess> manager_;
};

}  // namespace tessaloom::test
