// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/MicRecorder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QCoroTask>
#include <algorithm>
#include <cmath>
#include <csignal>
#include <numbers>
#include <thread>

#include "capture/ScriptedDevices.h"
#include "media/MediaError.h"
#include "support/LogLines.h"
#include "support/SoundProbe.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

/// A tenth of a second of a tone, or of silence.
std::vector<float> sound(bool audible) {
    std::vector<float> samples;
    for (int i = 0; i < 4800; ++i)
        samples.push_back(audible ? static_cast<float>(0.5 * std::cos(2 * std::numbers::pi * i / 48)) : 0.0F);
    return samples;
}

class Microphone : public ::testing::Test {
  protected:
    void deliver(double hostTime, bool audible, int lost = 0) {
        const auto samples = sound(audible);
        control.deliver({hostTime, samples, lost});
    }
    void stop() { QCoro::waitFor(recorder->stop()); }

    test::TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "audio.m4a";
    test::SourceControl<SoundChunk> control;
    std::unique_ptr<MicRecorder> recorder =
        MicRecorder::start(std::make_unique<test::ScriptedSound>(control, SoundFormat{48'000, 1}), file);
    /// Long enough ago for all that is delivered to have happened.
    double origin = HostClock::seconds() - 10;
};

TEST_F(Microphone, WritesNothingUntilItIsArmed) {
    deliver(origin, true);
    deliver(origin + 0.1, true);
    stop();
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(recorder->firstSamplePTS(), std::nullopt);
    EXPECT_FALSE(control.running());
}

TEST_F(Microphone, WithNoSampleAfterTheOriginThereIsNoFile) {
    recorder->arm(origin);
    deliver(origin - 0.1, true);
    stop();
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(Microphone, ASampleAtTheOriginIsWritten) {
    recorder->arm(origin);
    deliver(origin - 0.1, true);
    deliver(origin, true);
    deliver(origin + 0.1, false);
    stop();
    EXPECT_EQ(recorder->firstSamplePTS(), origin);
    const auto decoded = test::decodeSound(file);
    EXPECT_EQ(decoded.sampleRate, 44'100);
    EXPECT_EQ(decoded.channels, 1);
    EXPECT_LT(decoded.onset(0.2F).value_or(1), 0.005);
    EXPECT_LT(decoded.peak(0.12, 0.3), 0.05F);
}

TEST_F(Microphone, OneThatLagsIsPlacedByItsOffsetAndNotTrimmed) {
    recorder->arm(origin);
    deliver(origin + 0.7, true);
    stop();
    EXPECT_EQ(recorder->firstSamplePTS(), origin + 0.7);
    EXPECT_LT(test::decodeSound(file).onset(0.2F).value_or(1), 0.005);
}

TEST_F(Microphone, WhatGotLostIsSilenceOfItsLength) {
    recorder->arm(origin);
    deliver(origin, false);
    deliver(origin + 3.1, true, 30);
    const test::LogLines log;
    stop();
    EXPECT_EQ(log.count("Mic: Mic dropped 30 buffers; audio may drift"), 1);
    EXPECT_NEAR(test::decodeSound(file).onset(0.2F).value_or(0), 3.1, 0.005);
}

TEST_F(Microphone, OneThatGoesAwayIsSilentUntilTheStop) {
    recorder->arm(origin);
    deliver(origin, true);
    stop();
    EXPECT_NEAR(test::decodeSound(file).duration(), HostClock::seconds() - origin, 0.5);
}

TEST_F(Microphone, ItsFileCanBePlayedWhileItGrows) {
    recorder->arm(origin);
    for (int n = 0; n < 20; ++n)
        deliver(origin + 0.1 * n, n >= 10);
    std::this_thread::sleep_for(1100ms);
    EXPECT_NEAR(test::decodeSound(file).onset(0.2F).value_or(0), 1.0, 0.005);
    stop();
}

TEST_F(Microphone, AFileThatCannotBeMadeIsAnErrorOfTheStart) {
    const auto blocked = folder.path() / "blocked.m4a";
    std::filesystem::create_directories(blocked / "in the way");
    test::SourceControl<SoundChunk> other;
    EXPECT_THROW(
        MicRecorder::start(std::make_unique<test::ScriptedSound>(other, SoundFormat{48'000, 1}), blocked),
        MediaError);
    EXPECT_FALSE(other.running());
    EXPECT_TRUE(std::filesystem::exists(blocked / "in the way"));
}

TEST_F(Microphone, ItsFileIsEmptyUntilItIsArmed) {
    deliver(origin, true);
    EXPECT_EQ(std::filesystem::file_size(file), 0U) << "what isn't empty counts as a recording after a crash";
}

/// As on a full disk, as long as it lives.
class NoFileGrows {
  public:
    NoFileGrows() : ignored_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit none{0, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~NoFileGrows() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, ignored_);
    }
    NoFileGrows(const NoFileGrows&) = delete;
    NoFileGrows& operator=(const NoFileGrows&) = delete;

  private:
    void (*ignored_)(int);
    rlimit before_{};
};

TEST_F(Microphone, AFileThatCanNoLongerBeWrittenEndsQuietly) {
    const test::LogLines lines;
    recorder->arm(origin);
    {
        const NoFileGrows full;
        deliver(origin, true);
        deliver(origin + 0.1, true);
        stop();
    }
    EXPECT_TRUE(lines.contains(QtCriticalMsg, "Failed to write the microphone's sound: "));
    EXPECT_FALSE(control.running());
}

}  // namespace
}  // namespace tessaloom
