// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <thread>

#include "base/HostClock.h"
#include "capture/CaptureError.h"
#include "platform/pipewire/PipeWireDevices.h"
#include "support/PixelAt.h"
#include "support/SoundServer.h"
#include "support/VirtualCamera.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;
using test::SoundServer;
using test::VirtualCamera;

/// A picture every thirtieth of a second, and what it takes to bring one here.
constexpr double tolerance = 0.045;
constexpr int white = 200;

/// Sees what a camera delivers.
class Watcher {
  public:
    explicit Watcher(std::unique_ptr<CameraSource> source) : source_(std::move(source)) {
        source_->start([this](const CameraPicture& picture) { receive(picture); });
    }
    ~Watcher() { source_->stop(); }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    /// The time told of the first white picture after a black one; nothing within three seconds.
    std::optional<double> nextFlash() {
        const std::size_t before = flashes().size();
        for (int round = 0; round < 300 && flashes().size() == before; ++round)
            std::this_thread::sleep_for(10ms);
        const auto seen = flashes();
        return seen.size() == before ? std::nullopt : std::optional(seen.back());
    }
    std::string name() const { return source_->name(); }

  private:
    std::vector<double> flashes() const {
        const std::lock_guard guard(lock_);
        return flashes_;
    }
    void receive(const CameraPicture& picture) {
        const std::lock_guard guard(lock_);
        const bool isWhite = *test::pixelAt(picture.pixels, 5, 5) > white;
        if (isWhite && wasBlack_) flashes_.push_back(picture.hostTime);
        wasBlack_ = !isWhite;
    }

    std::unique_ptr<CameraSource> source_;
    mutable std::mutex lock_;
    bool wasBlack_ = false;
    std::vector<double> flashes_;
};

class PipeWireCamera : public ::testing::Test {
  protected:
    PipeWireCamera() { setenv("XDG_RUNTIME_DIR", server.environment().at("XDG_RUNTIME_DIR").c_str(), 1); }

    std::unique_ptr<VirtualCamera> plugIn(
        const std::string& name, VirtualCamera::Behaviour behaviour = VirtualCamera::Behaviour::delivers) {
        auto camera = std::make_unique<VirtualCamera>(server.socket(), name, behaviour);
        for (int round = 0; round < 100 && !find(name); ++round)
            std::this_thread::sleep_for(20ms);
        return camera;
    }
    bool find(const std::string& name) {
        try {
            return devices.openCamera(name)->name() == name + " (test)";
        } catch (const CaptureError&) {
            return false;
        }
    }

    SoundServer server;
    PipeWireDevices devices;
};

TEST_F(PipeWireCamera, WithoutACameraThereIsNone) {
    EXPECT_THROW(devices.openCamera(""), CaptureError);
    EXPECT_THROW(devices.openCamera("gone"), CaptureError);
}

TEST_F(PipeWireCamera, IsChosenByName) {
    // Whichever of the two is the default one, once it must be the other.
    for (const bool firstIsStuck : {true, false}) {
        using enum VirtualCamera::Behaviour;
        const auto first = plugIn("first", firstIsStuck ? isStuck : delivers);
        const auto second = plugIn("second", firstIsStuck ? delivers : isStuck);
        const std::string wanted = firstIsStuck ? "second" : "first";
        Watcher eye(devices.openCamera(wanted));
        EXPECT_EQ(eye.name(), wanted + " (test)");
        EXPECT_TRUE(eye.nextFlash()) << wanted;
    }
}

TEST_F(PipeWireCamera, OneThatIsGoneIsReplacedByTheDefaultOne) {
    const auto camera = plugIn("camera");
    Watcher eye(devices.openCamera("gone"));
    EXPECT_EQ(eye.name(), "camera (test)");
    EXPECT_TRUE(eye.nextFlash());
}

class PipeWireCameraOfTimes : public PipeWireCamera,
                              public ::testing::WithParamInterface<VirtualCamera::Behaviour> {};

TEST_P(PipeWireCameraOfTimes, AFlashIsSeenWhenItHappens) {
    const auto camera = plugIn("camera", GetParam());
    Watcher eye(devices.openCamera(""));
    const auto flash = eye.nextFlash();
    ASSERT_TRUE(flash);
    EXPECT_NEAR(*flash, std::round(*flash), tolerance);
    EXPECT_NEAR(*flash, HostClock::seconds(), 0.2) << "by the host's clock";
}

INSTANTIATE_TEST_SUITE_P(, PipeWireCameraOfTimes,
                         ::testing::Values(VirtualCamera::Behaviour::delivers,
                                           VirtualCamera::Behaviour::tellsNoTimes,
                                           VirtualCamera::Behaviour::tellsForeignTimes),
                         [](const auto& kind) {
                             switch (kind.param) {
                                 case VirtualCamera::Behaviour::tellsNoTimes:
                                     return "withoutTimes";
                                 case VirtualCamera::Behaviour::tellsForeignTimes:
                                     return "withForeignTimes";
                                 default:
                                     return "withTimes";
                             }
                         });

}  // namespace
}  // namespace tessaloom
