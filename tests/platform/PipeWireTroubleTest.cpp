// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "base/HostClock.h"
#include "capture/CaptureError.h"
#include "platform/pipewire/PipeWireDevices.h"
#include "support/AlsaServer.h"
#include "support/LogLines.h"
#include "support/SoundServer.h"
#include "support/VirtualCamera.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;
using test::AlsaServer;
using test::SoundServer;
using test::VirtualCamera;

/// The server that this process finds.
void use(const SoundServer& server) {
    setenv("XDG_RUNTIME_DIR", server.environment().at("XDG_RUNTIME_DIR").c_str(), 1);
}

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
    AlsaServer server;
    use(server.server());
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
    use(server.server());
    PipeWireDevices devices;
    double shortest = 1;
    for (int round = 0; round < 3; ++round) {
        const double before = HostClock::seconds();
        const auto microphone = devices.openMicrophone("alsa");
        shortest = std::min(shortest, HostClock::seconds() - before);
    }
    RecordProperty("milliseconds", std::to_string(1000 * shortest));
    EXPECT_LT(shortest, 0.1);
}

TEST(PipeWireTrouble, ACameraWhosePicturesNobodyKnowsIsAnError) {
    const SoundServer server;
    use(server);
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
