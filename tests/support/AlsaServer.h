// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

#include "support/SoundServer.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::test {

/// A sound server with a microphone that is ALSA's, "alsa" by name and "ALSA microphone" for people. ALSA
/// looks up what it is each time that it is opened.
class AlsaServer {
  public:
    explicit AlsaServer(const Environment& base = currentEnvironment());

    const SoundServer& server() const { return server_; }

    /// From now on the microphone can be opened, as at first, or not, though it stays in the server's list.
    void connect() { write("type null"); }
    void disconnect() { write("type hw card 9"); }

  private:
    static Environment with(const std::filesystem::path& configuration, Environment environment);
    void write(const char* device);

    TemporaryFolder folder_;
    std::filesystem::path configuration_ = folder_.path() / "asound.conf";
    int changes_ = 0;
    SoundServer server_;
};

}  // namespace tessaloom::test
