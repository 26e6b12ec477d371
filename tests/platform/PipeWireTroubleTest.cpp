// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "base/HostClock.h"
#include "capture/CaptureError.h"
#include "platform/pipewire/PipeWireDevices.h"
#include "support/LogLines.h"
#include "support/SoundServer.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualCamera.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;
using test::SoundServer;
using test::VirtualCamera;

/// A server with an ALSA microphone. ALSA looks up what that is each time it is opened.
class AlsaServer {
  public:
    AlsaServer() {
        connect();
        const std::filesystem::path configuration = server_.environment().at("XDG_CONFIG_HOME");
        std::ofstream(configuration / "pipewire" / "pipewire.conf.d" / "microphone.conf")
            << "context.objects = [ { factory = adapter args = { factory.name = api.alsa.pcm.source "
               "node.name = alsa node.description = \"ALSA microphone\" priority.session = 50000 "
               "media.class = Audio/Source api.alsa.path = testmic } } ]\n";
        server_.stop();
        server_.start();
        setenv("XDG_RUNTIME_DIR", server_.environment().at("XDG_RUNTIME_DIR").c_str(), 1);
    }

    void connect() const { write("type null"); }
    void disconnect() const { write("type hw card 9"); }

  private:
    static test::Environment environment(const std::filesystem::path& configuration) {
        auto environment = test::currentEnvironment();
        environment["ALSA_CONFIG_PATH"] = configuration.string();
        return environment;
    }
    void write(const char* device) const {
        std::ofstream(configuration_) << "</usr/share/alsa/alsa.conf>\npcm.testmic { " << device << " }\n";
        // ALSA goes by the second it was changed in.
        std::filesystem::last_write_time(configuration_,
                                         std::filesystem::file_time_type::clock::now() + ++changes_ * 2s);
    }

    test::TemporaryFolder folder_;
    std::filesystem::path configuration_ = folder_.path() / "asound.conf";
    mutable int changes_ = 0;
    SoundServer server_{environment(configuration_)};
};

std::string reasonNotToOpen(PipeWireDevices& devices) {
    try {
        devices.openMicrophone("alsa");
        return {};
    } catch (const std::exception& error) {
        return error.what();
    }
}

TEST(PipeWireTrouble, AMicrophoneThatCannotBeOpenedIsAnError) {
    const test::LogLines log;
    const AlsaServer server;
    server.disconnect();
    PipeWireDevices devices;
    EXPECT_EQ(reasonNotToOpen(devices),
              "ALSA microphone can't be used: Start error: No such file or directory.");
    EXPECT_EQ(log.count("No sound comes from ALSA microphone: Start error: No such file or directory"), 1);
    server.connect();
    // The server itself tries again after five seconds.
    for (int round = 0; round < 100 && !reasonNotToOpen(devices).empty(); ++round)
        std::this_thread::sleep_for(100ms);
    EXPECT_EQ(reasonNotToOpen(devices), "") << "what was wrong before is forgotten";
}

TEST(PipeWireTrouble, ADeviceThatAllIsWellWithIsSoonOpened) {
    const AlsaServer server;
    PipeWireDevices devices;
    double shortest = 1;
    for (int round = 0; round < 3; ++round) {
        const double before = HostClock::seconds();
        const auto microphone = devices.openMicrophone("alsa");
        shortest = std::min(shortest, HostClock::seconds() - before);
    }
    RecordProperty("milliseconds", std::to_string(1000 * shortest));
    EXPECT_LT(shortest, 0.05);
}

TEST(PipeWireTrouble, ACameraWhosePicturesNobodyKnowsIsAnError) {
    const SoundServer server;
    setenv("XDG_RUNTIME_DIR", server.environment().at("XDG_RUNTIME_DIR").c_str(), 1);
    const test::LogLines log;
    const VirtualCamera camera(server.socket(), "odd", VirtualCamera::Behaviour::hasStrangePictures);
    PipeWireDevices devices;
    std::string reason;
    for (int round = 0; round < 100 && !reason.starts_with("odd"); ++round) {
        try {
            devices.openCamera("odd");
        } catch (const std::exception& error) {
            reason = error.what();
        }
    }
    EXPECT_EQ(reason, "odd (test) can't be used: no more input formats.");
    EXPECT_EQ(log.count("No picture comes from odd (test): no more input formats"), 1);
}

}  // namespace
}  // namespace tessaloom
