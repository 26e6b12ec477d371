// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SoundServer.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr auto configuration = R"(context.objects = [
  { factory = adapter args = { factory.name = support.null-audio-sink node.name = test_speakers
      node.description = "Test speakers" media.class = Audio/Sink audio.position = [ FL FR ]
      monitor.channel-volumes = true } }
]
)";

}  // namespace

SoundServer::SoundServer(const Environment& base) : environment_(base) {
    environment_["XDG_RUNTIME_DIR"] = folder_.path().string();
    environment_["XDG_CONFIG_HOME"] = (folder_.path() / "config").string();
    environment_["XDG_STATE_HOME"] = (folder_.path() / "state").string();
    environment_["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + (folder_.path() / "bus").string();
    for (const char* inherited : {"PIPEWIRE_REMOTE", "PIPEWIRE_RUNTIME_DIR", "PULSE_SERVER"})
        environment_.erase(inherited);
    writeConfiguration();
    bus_.emplace(std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--print-address",
                                          "--address=" + environment_["DBUS_SESSION_BUS_ADDRESS"]},
                 environment_);
    if (!bus_->waitForOutput("\n", 10s))
        throw std::runtime_error("The session bus did not start: " + bus_->errors());
    start();
}

std::string SoundServer::socket() const {
    return (folder_.path() / "pipewire-0").string();
}

void SoundServer::writeConfiguration() const {
    const auto folder = folder_.path() / "config" / "pipewire" / "pipewire.conf.d";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "test.conf") << configuration;
}

void SoundServer::stop() {
    manager_.reset();
    server_.reset();
}

void SoundServer::start() {
    server_.emplace(std::vector<std::string>{"pipewire"}, environment_);
    for (int round = 0; !std::filesystem::exists(socket()); ++round) {
        if (round > 1000 || !server_->running())
            throw std::runtime_error("The sound server did not start: " + server_->errors());
        std::this_thread::sleep_for(10ms);
    }
    manager_.emplace(std::vector<std::string>{"wireplumber"}, environment_);
    waitUntilReady();
}

/// The session manager is ready once it has chosen the default speakers.
void SoundServer::waitUntilReady() {
    for (int round = 0; round < 100; ++round) {
        ChildProcess question({"wpctl", "inspect", "@DEFAULT_AUDIO_SINK@"}, environment_);
        if (question.waitForExit(5s) == 0 && question.output().find("test_speakers") != std::string::npos)
            return;
        std::this_thread::sleep_for(50ms);
    }
    throw std::runtime_error("The sound server isn't ready: " + manager_->errors());
}

}  // namespace tessaloom::test
