// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <mutex>
#include <thread>

#include "base/HostClock.h"
#include "capture/CaptureError.h"
#include "capture/SteadySound.h"
#include "platform/pipewire/PipeWireDevices.h"
#include "support/SoundServer.h"
#include "support/VirtualSound.h"
#include "support/VirtualSoundCard.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;
using test::SoundServer;
using test::VirtualSound;
using test::VirtualSoundCard;

constexpr double tolerance = 0.010;
constexpr double closeTolerance = 0.002;
constexpr float beepLevel = 0.15F;

/// What a source delivers, put on the host's clock as the recorders do.
class Listener {
  public:
    explicit Listener(std::unique_ptr<LiveSoundSource> source) : source_(std::move(source)) {
        source_->start([this](const SoundChunk& chunk) { receive(chunk); });
    }
    ~Listener() { source_->stop(); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// The next chunk is held up for so long.
    void stallOnce(std::chrono::milliseconds time) {
        const std::lock_guard guard(lock_);
        stall_ = time;
    }
    bool heardBeep(double hostTime) const { return std::abs(beepOnset(hostTime) - hostTime) < tolerance; }
    /// When the beep of that full second is first heard; 0 when it isn't.
    double beepOnset(double second) const {
        const std::lock_guard guard(lock_);
        for (std::size_t i = 0; i < samples_.size(); ++i) {
            const double time = start_ + static_cast<double>(i) / 48'000;
            if (time > second - 0.4 && time < second + 0.4 && std::abs(samples_[i]) > beepLevel) return time;
        }
        return 0;
    }
    /// How much later than they happen beeps come by the source's own time stamps: the middle of what it was
    /// since `from`, since a busy server may leave out where one begins. Nothing when none came.
    std::optional<double> delayOfBeeps(double from) const {
        const std::lock_guard guard(lock_);
        std::vector<double> delays;
        for (const double onset : onsets_)
            if (onset > from) delays.push_back(onset - std::round(onset));
        std::ranges::sort(delays);
        return delays.empty() ? std::nullopt : std::optional(delays[delays.size() / 2]);
    }
    int lost() const {
        const std::lock_guard guard(lock_);
        return lost_;
    }
    double end() const {
        const std::lock_guard guard(lock_);
        return start_ + static_cast<double>(samples_.size()) / 48'000;
    }
    /// Samples in a second of HostClock as the device gave them, whatever a busy server left out.
    double receivedRate() const {
        const std::lock_guard guard(lock_);
        auto rates = rates_;
        std::ranges::sort(rates);
        return rates.at(rates.size() / 2);
    }
    const LiveSoundSource& source() const { return *source_; }

  private:
    void receive(const SoundChunk& chunk) {
        std::unique_lock guard(lock_);
        const auto stall = std::exchange(stall_, 0ms);
        guard.unlock();
        std::this_thread::sleep_for(stall);
        guard.lock();
        const auto channels = static_cast<std::size_t>(source_->format().channels);
        if (!sound_) {
            start_ = chunk.hostTime;
            sound_.emplace(source_->format(), 48'000, start_, [this, channels](std::span<const float> more) {
                for (std::size_t i = 0; i < more.size(); i += channels)
                    samples_.push_back(more[i]);
            });
        }
        const auto frames = static_cast<double>(chunk.samples.size() / channels);
        if (const double last = std::exchange(lastChunk_, chunk.hostTime); last > 0)
            rates_.push_back(frames / (chunk.hostTime - last));
        lost_ += chunk.buffersLostBefore;
        noteOnset(chunk, channels);
        sound_->append(chunk);
    }

    void noteOnset(const SoundChunk& chunk, std::size_t channels) {
        const auto loud =
            std::ranges::find_if(chunk.samples, [](float sample) { return std::abs(sample) > beepLevel; });
        if (loud == chunk.samples.end()) return;
        const auto frame = static_cast<std::size_t>(loud - chunk.samples.begin()) / channels;
        const double time = chunk.hostTime + static_cast<double>(frame) / 48'000;
        if (time > lastLoud_ + 0.5) onsets_.push_back(time);
        lastLoud_ = time;
    }

    std::unique_ptr<LiveSoundSource> source_;
    mutable std::mutex lock_;
    std::chrono::milliseconds stall_{0};
    std::optional<SteadySound> sound_;
    double start_ = 0;
    double lastChunk_ = 0;
    std::vector<double> rates_;   ///< from each chunk to the next
    std::vector<double> onsets_;  ///< of beeps, by the chunks' own times
    double lastLoud_ = 0;
    std::vector<float> samples_;
    int lost_ = 0;
};

/// A full second that comes soon, but leaves time for things to start.
double nextBeep(double atLeastFromNow = 0.4) {
    return std::ceil(HostClock::seconds() + atLeastFromNow);
}

void sleepUntil(double hostTime) {
    std::this_thread::sleep_for(std::chrono::duration<double>(hostTime - HostClock::seconds()));
}

class PipeWireSound : public ::testing::Test {
  protected:
    PipeWireSound() { setenv("XDG_RUNTIME_DIR", server.environment().at("XDG_RUNTIME_DIR").c_str(), 1); }

    std::unique_ptr<VirtualSound> plugIn(const std::string& name,
                                         VirtualSound::Kind kind = VirtualSound::Kind::microphone) {
        auto device = std::make_unique<VirtualSound>(server.socket(), kind, name);
        // Until the session manager has seen it.
        for (int round = 0; round < 100 && kind == VirtualSound::Kind::microphone; ++round) {
            if (find(name)) break;
            std::this_thread::sleep_for(20ms);
        }
        return device;
    }
    bool find(const std::string& name) {
        try {
            return devices.openMicrophone(name)->name() == name + " (test)";
        } catch (const CaptureError&) {
            return false;
        }
    }

    /// How many frames a cycle has, whatever anybody asks for.
    void forceCycles(int frames) {
        test::ChildProcess(
            {"pw-metadata", "-n", "settings", "0", "clock.force-quantum", std::to_string(frames)},
            server.environment())
            .waitForExit(5s);
    }

    SoundServer server;
    PipeWireDevices devices;
};

TEST_F(PipeWireSound, WithoutAMicrophoneThereIsNone) {
    EXPECT_THROW(devices.openMicrophone(""), CaptureError);
    EXPECT_THROW(devices.openMicrophone("gone"), CaptureError);
    EXPECT_NO_THROW(devices.openSystemAudio());
}

TEST_F(PipeWireSound, WithoutAServerNothingCanBeOpened) {
    server.stop();
    EXPECT_THROW(devices.openMicrophone(""), CaptureError);
    EXPECT_THROW(devices.openSystemAudio(), std::runtime_error);
}

TEST_F(PipeWireSound, ABeepIsHeardWhenItHappens) {
    const auto microphone = plugIn("first");
    const auto player = plugIn("player", VirtualSound::Kind::player);
    Listener ear(devices.openMicrophone(""));
    Listener tap(devices.openSystemAudio());
    const double beep = nextBeep();
    sleepUntil(beep + 0.3);
    EXPECT_NEAR(ear.beepOnset(beep), beep, tolerance);
    EXPECT_NEAR(tap.beepOnset(beep), beep, tolerance);
}

TEST_F(PipeWireSound, OfACardWhoseClockIsFastBeepsAreHeardWhenTheyHappen) {
    const VirtualSoundCard card(server.socket(), "card", {.clockError = 5000e-6});
    const VirtualSound microphone(server.socket(), VirtualSound::Kind::microphone, "first",
                                  VirtualSoundCard::group);
    for (int round = 0; round < 100 && !find("first"); ++round)
        std::this_thread::sleep_for(20ms);
    const auto player = plugIn("player", VirtualSound::Kind::player);
    Listener ear(devices.openMicrophone(""));
    Listener tap(devices.openSystemAudio());
    // By then the clock alone would have moved them by 25 ms.
    const double beep = nextBeep(5);
    sleepUntil(beep + 0.3);
    EXPECT_NEAR(ear.beepOnset(beep), beep, tolerance);
    EXPECT_NEAR(tap.beepOnset(beep), beep, tolerance);
    EXPECT_NEAR(ear.receivedRate(), 48'000 * 1.005, 24);
    EXPECT_NEAR(tap.receivedRate(), 48'000 * 1.005, 24);
}

/// Who sets the pace, and what the devices tell of themselves.
struct Roles {
    const char* name;
    bool speakersFollow;  ///< the clock of another card
    float latency;        ///< from a cycle's start to its sound, in cycles, as real cards tell it; 0 untold
    double clockError;    ///< of the card that sets the pace
};

void PrintTo(const Roles& roles, std::ostream* stream) {
    *stream << roles.name;
}

class PipeWireSoundOfRoles : public PipeWireSound, public ::testing::WithParamInterface<Roles> {
  protected:
    /// In seconds, how late two beeps were by the recorded sound's own times, and the rate it came at.
    struct Heard {
        double microphone = 0;
        double speakers = 0;
        double rate = 0;
    };

    Heard listen() {
        Listener ear(devices.openMicrophone(""));
        Listener tap(devices.openSystemAudio());
        const double first = nextBeep(0.7);
        sleepUntil(first + 2.3);
        const double never = std::numeric_limits<double>::infinity();
        return {.microphone = ear.delayOfBeeps(first - 0.3).value_or(never),
                .speakers = tap.delayOfBeeps(first - 0.3).value_or(never),
                .rate = tap.receivedRate()};
    }

    /// A server that was held up plays late itself, and what it plays late is recorded late: where the
    /// machine had too little time, another try tells.
    Heard listenOnAQuietMoment() {
        Heard heard = listen();
        const auto isLate = [&] {
            return std::max(std::abs(heard.microphone), std::abs(heard.speakers)) > closeTolerance;
        };
        for (int tries = 1; tries < 4 && isLate(); ++tries)
            heard = listen();
        return heard;
    }
};

TEST_P(PipeWireSoundOfRoles, BeepsAreHeardWhenTheyHappen) {
    const Roles& roles = GetParam();
    const VirtualSoundCard pace(server.socket(), "pace",
                                {.clockError = roles.clockError,
                                 .hasDefaultSpeakers = !roles.speakersFollow,
                                 .clockPriority = 30'000,
                                 .latency = roles.latency});
    const VirtualSoundCard other(
        server.socket(), "other",
        {.hasDefaultSpeakers = roles.speakersFollow, .clockPriority = 20'000, .latency = roles.latency});
    const VirtualSound microphone(server.socket(), VirtualSound::Kind::microphone, "first",
                                  VirtualSoundCard::group, roles.latency);
    for (int round = 0; round < 100 && !find("first"); ++round)
        std::this_thread::sleep_for(20ms);
    const auto player = plugIn("player", VirtualSound::Kind::player);
    const Heard heard = listenOnAQuietMoment();
    RecordProperty("microphoneMilliseconds", std::to_string(1000 * heard.microphone));
    RecordProperty("speakersMilliseconds", std::to_string(1000 * heard.speakers));
    EXPECT_NEAR(heard.microphone, 0, closeTolerance);
    EXPECT_NEAR(heard.speakers, 0, closeTolerance);
    EXPECT_NEAR(heard.rate, 48'000 * (1 + roles.clockError), 24);
}

INSTANTIATE_TEST_SUITE_P(, PipeWireSoundOfRoles,
                         ::testing::Values(Roles{"drive", false, 0, 0}, Roles{"follow", true, 0, 0},
                                           Roles{"driveAndTell", false, 1, 0},
                                           Roles{"followAndTell", true, 1, 0},
                                           Roles{"driveFast", false, 1, 5000e-6},
                                           Roles{"followFast", true, 1, 5000e-6}),
                         [](const auto& roles) { return std::string(roles.param.name); });

TEST_F(PipeWireSound, AMicrophoneIsChosenByName) {
    const auto first = plugIn("first");
    const auto second = plugIn("second");
    EXPECT_EQ(devices.openMicrophone("first")->name(), "first (test)");
    EXPECT_EQ(devices.openMicrophone("second")->name(), "second (test)");
}

TEST_F(PipeWireSound, WithNoOrAnUnknownNameItIsTheDefaultOne) {
    const auto first = plugIn("first");
    EXPECT_EQ(devices.openMicrophone("")->name(), "first (test)");
    EXPECT_EQ(devices.openMicrophone("gone")->name(), "first (test)");
    EXPECT_EQ(devices.openSystemAudio()->name(), "Test speakers");
    Listener ear(devices.openMicrophone("gone"));
    const double beep = nextBeep();
    sleepUntil(beep + 0.3);
    EXPECT_TRUE(ear.heardBeep(beep)) << ear.beepOnset(beep) - beep;
}

TEST_F(PipeWireSound, OfTwoMicrophonesTheDefaultOneIsNamed) {
    const auto first = plugIn("first");
    const auto second = plugIn("second");
    for (const char* name : {"second", "first", "second"}) {
        test::ChildProcess({"pw-metadata", "0", "default.configured.audio.source",
                            std::string(R"({"name":")") + name + R"("})", "Spa:String:JSON"},
                           server.environment())
            .waitForExit(5s);
        std::string told;
        for (int round = 0; round < 100 && !told.starts_with(name); ++round) {
            told = devices.openMicrophone("")->name();
            std::this_thread::sleep_for(20ms);
        }
        EXPECT_EQ(told, std::string(name) + " (test)");
    }
}

TEST_F(PipeWireSound, AListenerThatIsHeldUpCatchesUp) {
    const auto microphone = plugIn("first");
    Listener ear(devices.openMicrophone(""));
    const double beep = nextBeep();
    sleepUntil(beep - 0.1);
    ear.stallOnce(300ms);
    sleepUntil(beep + 0.5);
    // Fourteen buffers have waited. On a busy machine the server itself may leave out one or another.
    EXPECT_LT(ear.lost(), 5);
    EXPECT_TRUE(ear.heardBeep(beep)) << ear.beepOnset(beep) - beep;
}

TEST_F(PipeWireSound, WhatAListenerMissesIsCounted) {
    const auto microphone = plugIn("first");
    Listener ear(devices.openMicrophone(""));
    std::this_thread::sleep_for(300ms);
    ear.stallOnce(1500ms);
    const double beep = nextBeep(1.8);
    sleepUntil(beep + 0.3);
    EXPECT_GT(ear.lost(), 0);
    EXPECT_TRUE(ear.heardBeep(beep)) << ear.beepOnset(beep) - beep;
}

TEST_F(PipeWireSound, NothingIsMissedWhenCyclesBecomeShorterOrLonger) {
    const auto microphone = plugIn("first");
    Listener ear(devices.openMicrophone(""));
    const auto lostInAChange = [&] {
        const int before = ear.lost();
        for (const int frames : {2048, 256, 1024}) {
            forceCycles(frames);
            std::this_thread::sleep_for(200ms);
        }
        return ear.lost() - before;
    };
    int lost = lostInAChange();
    // A busy server may leave out one or another itself.
    for (int tries = 1; tries < 4 && lost > 0; ++tries)
        lost = std::min(lost, lostInAChange());
    EXPECT_EQ(lost, 0);
    EXPECT_GT(ear.end(), HostClock::seconds() - 0.2) << "there was something to lose";
}

TEST_F(PipeWireSound, AnotherMicrophoneTakesOverFromAnUnpluggedOne) {
    auto first = plugIn("first");
    const auto second = plugIn("second");
    Listener ear(devices.openMicrophone("first"));
    sleepUntil(nextBeep());
    first.reset();
    const double beep = nextBeep(0.8);
    sleepUntil(beep + 0.3);
    EXPECT_TRUE(ear.heardBeep(beep)) << ear.beepOnset(beep) - beep;
}

TEST_F(PipeWireSound, GoesOnWhenTheOnlyMicrophoneIsPluggedInAgain) {
    auto microphone = plugIn("first");
    Listener ear(devices.openMicrophone("first"));
    const double before = nextBeep();
    sleepUntil(before + 0.3);
    microphone.reset();
    std::this_thread::sleep_for(1s);
    microphone = plugIn("first");
    const double after = nextBeep(1.0);
    sleepUntil(after + 0.3);
    EXPECT_TRUE(ear.heardBeep(before));
    EXPECT_TRUE(ear.heardBeep(after)) << ear.beepOnset(after) - after;
    EXPECT_NEAR(ear.end(), after + 0.3, 0.15) << "the gap has its length";
}

TEST_F(PipeWireSound, GoesOnWhenTheServerIsRestarted) {
    auto microphone = plugIn("first");
    Listener ear(devices.openMicrophone(""));
    Listener tap(devices.openSystemAudio());
    sleepUntil(nextBeep());
    microphone.reset();
    server.stop();
    std::this_thread::sleep_for(500ms);
    server.start();
    microphone = plugIn("first");
    const auto player = plugIn("player", VirtualSound::Kind::player);
    const double beep = nextBeep(1.2);
    sleepUntil(beep + 0.3);
    EXPECT_TRUE(ear.heardBeep(beep)) << ear.beepOnset(beep) - beep;
    EXPECT_TRUE(tap.heardBeep(beep)) << tap.beepOnset(beep) - beep;
}

}  // namespace
}  // namespace tessaloom
