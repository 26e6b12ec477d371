// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <thread>

#include "base/HostClock.h"
#include "desktop/DesktopRecording.h"
#include "media/MovieReader.h"
#include "motion/InterruptedTake.h"
#include "support/AlsaServer.h"
#include "support/MovieProbe.h"
#include "support/SoundProbe.h"
#include "support/SoundServer.h"
#include "support/TestWindow.h"
#include "support/VirtualCamera.h"
#include "support/VirtualSound.h"
#include "support/VirtualSoundCard.h"
#include "support/XInjector.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr int width = 320;
constexpr int height = 240;
constexpr float beepLevel = 0.15F;
constexpr double soundTolerance = 0.010;

/// Distance from the nearest full second, at which everything beeps and flashes.
double offBeat(double hostTime) {
    return hostTime - std::round(hostTime);
}

void sleepUntil(double hostTime) {
    std::this_thread::sleep_for(std::chrono::duration<double>(hostTime - HostClock::seconds()));
}

/// A desktop with a sound server on which everything happens at full seconds of HostClock.
class SoundAndCamera : public ::testing::Test {
  protected:
    DesktopRecording record(std::vector<std::string> arguments) {
        return {environment(), std::move(arguments)};
    }
    Environment environment() const {
        Environment environment = sound.environment();
        environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
        return environment;
    }
    std::unique_ptr<VirtualSound> plugIn(VirtualSound::Kind kind, const std::string& name) {
        return std::make_unique<VirtualSound>(sound.socket(), kind, name);
    }

    VirtualDesktop desktop{width, height};
    XInjector injector{desktop.displayName()};
    SoundServer sound{desktop.environment()};
};

/// Flashes a window and clicks at the full seconds up to `end`.
void flashAndClickUntil(double end, XInjector& injector) {
    TestWindow window(injector.connection(), {.rect = {0, 0, 100, 100}, .rgb = 0});
    for (double second = std::ceil(HostClock::seconds() + 0.1); second < end; ++second) {
        sleepUntil(second);
        window.fill({0, 0, 100, 100}, 0xFFFFFF);
        injector.click();
        sleepUntil(second + 0.2);
        window.fill({0, 0, 100, 100}, 0);
    }
}

/// When the movie first turns from dark to light, in seconds of the file.
std::optional<double> firstFlash(const std::filesystem::path& file) {
    const auto movie = MovieReader::open(file);
    BgraImage picture;
    bool dark = false;
    while (const auto frame = movie->next()) {
        frame->toBgra(picture);
        const bool light = (colorAt(picture, 50, 50) & 0xFFU) > 128;
        if (dark && light) return frame->time();
        dark = !light;
    }
    return std::nullopt;
}

std::optional<double> beepIn(const DecodedSound& sound) {
    return sound.onsetAfterSilence(beepLevel, 0.3);
}

double clickTime(const EventLog& log) {
    const auto click = std::ranges::find_if(log.events, [](const auto& event) { return event.isClick(); });
    return click == log.events.end() ? -100 : click->pts;
}

TEST_F(SoundAndCamera, FlashClickAndBeepsLieWhereTheyHappened) {
    const auto microphone = plugIn(VirtualSound::Kind::microphone, "test_microphone");
    const auto player = plugIn(VirtualSound::Kind::player, "test_player");
    const VirtualCamera camera(sound.socket(), "test_camera");
    auto recording = record({"--microphone", "--camera", "--system-audio"});
    flashAndClickUntil(HostClock::seconds() + 4, injector);
    const TakeBundle bundle = recording.stop();
    const EventLog log = bundle.readLog();

    const double click = clickTime(log);
    ASSERT_GT(click, 0) << recording.program().errors();
    const auto expectWithin = [&](const char* what, std::optional<double> fileTime, double offset,
                                  double limit) {
        ASSERT_TRUE(fileTime) << what;
        const double distance = offBeat(*fileTime + offset - click);
        EXPECT_NEAR(distance, 0, limit) << what;
        RecordProperty(std::string(what) + "Milliseconds", std::to_string(1000 * distance));
    };

    const auto voice = decodeSound(bundle.file(TakeBundle::microphoneFile));
    EXPECT_EQ(voice.sampleRate, 44'100);
    EXPECT_EQ(voice.channels, 1);
    expectWithin("voice", beepIn(voice), log.micStartOffset, soundTolerance);
    const auto played = decodeSound(bundle.file(TakeBundle::screenFile));
    EXPECT_EQ(played.sampleRate, 48'000);
    EXPECT_EQ(played.channels, 2);
    expectWithin("played", beepIn(played), 0, soundTolerance);
    expectWithin("screen", firstFlash(bundle.file(TakeBundle::screenFile)), 0, 1.0 / 60 + 0.002);
    expectWithin("camera", firstFlash(bundle.file(TakeBundle::webcamFile)), log.webcamStartOffset,
                 1.0 / 30 + 0.002);

    EXPECT_TRUE(bundle.readEdit().webcam.enabled);
    EXPECT_LE(log.webcamStartOffset, 0);
    EXPECT_GE(log.micStartOffset, 0);
}

/// Seconds of the file at which beeps begin.
std::vector<double> beeps(const std::filesystem::path& file) {
    const auto decoded = decodeSound(file);
    std::vector<double> times;
    for (auto time = decoded.onsetAfterSilence(beepLevel, 0.3); time;
         time = decoded.onset(beepLevel, *time + 0.5))
        times.push_back(*time);
    return times;
}

/// The one of a file's beeps that belongs to this full second of HostClock.
std::optional<double> beepOf(double second, const std::vector<double>& beeps, const EventLog& log,
                             double fileOffset) {
    // The screen's first frame comes soon after its stream was made.
    const double origin = static_cast<double>(log.streamStartHostTime) * 1e-9;
    const auto belongs = [&](double time) { return std::abs(origin + fileOffset + time - second) < 0.4; };
    const auto found = std::ranges::find_if(beeps, belongs);
    return found == beeps.end() ? std::nullopt : std::optional(*found);
}

TEST_F(SoundAndCamera, WhatTheSwitchesLeaveOutIsNotThere) {
    const auto microphone = plugIn(VirtualSound::Kind::microphone, "test_microphone");
    const VirtualCamera camera(sound.socket(), "test_camera");
    auto recording = record({"--no-microphone", "--no-camera", "--no-system-audio"});
    const TakeBundle bundle = recording.stop();
    EXPECT_FALSE(bundle.hasMic());
    EXPECT_FALSE(bundle.hasWebcam());
    EXPECT_THROW(decodeSound(bundle.file(TakeBundle::screenFile)), std::runtime_error);
    EXPECT_FALSE(bundle.readEdit().webcam.enabled);
}

TEST_F(SoundAndCamera, WithNothingPluggedInTheScreenIsRecorded) {
    auto recording = record({"--microphone", "--camera"});
    std::this_thread::sleep_for(700ms);
    const TakeBundle bundle = recording.stop();
    const std::string errors = recording.program().errors();
    EXPECT_NE(errors.find("Microphone unavailable: This recording will have no microphone audio. "
                          "No microphone available.\n"),
              std::string::npos);
    EXPECT_NE(errors.find("Recording without the camera: No camera available.\n"), std::string::npos);
    EXPECT_FALSE(bundle.hasMic());
    EXPECT_FALSE(bundle.hasWebcam());
    EXPECT_GT(MovieReader::scanDuration(bundle.file(TakeBundle::screenFile)), 0.6);
    EXPECT_EQ(decodeSound(bundle.file(TakeBundle::screenFile)).peak(0, 10), 0.0F) << "the speakers are still";
}

TEST(SoundOfAlsa, AMicrophoneThatCannotBeOpenedIsNamedAndTheRestIsRecorded) {
    const VirtualDesktop desktop(width, height);
    AlsaServer alsa(desktop.environment());
    alsa.disconnect();
    Environment environment = alsa.server().environment();
    environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
    DesktopRecording recording(environment, {"--microphone", "--system-audio"});
    std::this_thread::sleep_for(500ms);
    const TakeBundle bundle = recording.stop();
    const std::string errors = recording.program().errors();
    EXPECT_NE(errors.find("no microphone audio. ALSA microphone can't be used: Start error: "
                          "No such file or directory.\n"),
              std::string::npos)
        << errors;
    EXPECT_FALSE(bundle.hasMic());
    EXPECT_GT(MovieReader::scanDuration(bundle.file(TakeBundle::screenFile)), 0.4);
}

TEST_F(SoundAndCamera, SilentSpeakersGiveATrackAsLongAsThePicture) {
    auto recording = record({"--no-microphone", "--system-audio"});
    std::this_thread::sleep_for(1500ms);
    const TakeBundle bundle = recording.stop();
    const auto file = bundle.file(TakeBundle::screenFile);
    EXPECT_NEAR(decodeSound(file).duration(), MovieReader::scanDuration(file), 0.05);
}

TEST_F(SoundAndCamera, ACameraThatIsStuckDoesNotHoldTheRecordingUp) {
    const VirtualCamera camera(sound.socket(), "test_camera", VirtualCamera::Behaviour::isStuck);
    auto recording = record({"--camera", "--no-microphone"});
    const TakeBundle bundle = recording.stop();
    EXPECT_NE(recording.program().errors().find("Webcam did not begin writing within 4.0s"),
              std::string::npos);
    EXPECT_FALSE(bundle.hasWebcam());
    EXPECT_GT(MovieReader::scanDuration(bundle.file(TakeBundle::screenFile)), 0);
}

TEST_F(SoundAndCamera, CtrlCEndsTheWaitForAStuckCameraAtOnce) {
    const VirtualCamera camera(sound.socket(), "test_camera", VirtualCamera::Behaviour::isStuck);
    const TemporaryFolder library;
    ChildProcess program({TESSALOOM_PROGRAM, "record", "--countdown", "0", "--camera", "--no-microphone"},
                         programEnvironment(environment(), library.path()));
    for (int round = 0; program.errors().find("Webcam recording started") == std::string::npos; ++round) {
        ASSERT_TRUE(round < 1000 && program.running()) << program.errors();
        program.waitForExit(10ms);
    }
    program.signal(SIGINT);
    EXPECT_EQ(program.waitForExit(20s), 130);
    EXPECT_EQ(program.errors().find("did not begin writing"), std::string::npos) << "it was waited for";
    EXPECT_TRUE(isWithoutRecordings(library.path()));
}

TEST_F(SoundAndCamera, TheTakeGoesOnThroughUnpluggedDevicesAndARestartedServer) {
    auto microphone = plugIn(VirtualSound::Kind::microphone, "test_microphone");
    auto camera = std::make_unique<VirtualCamera>(sound.socket(), "test_camera");
    auto recording = record({"--microphone", "--camera", "--system-audio"});
    const double before = std::ceil(HostClock::seconds() + 0.3);
    sleepUntil(before + 0.5);
    microphone.reset();
    camera.reset();
    sound.stop();
    std::this_thread::sleep_for(1s);
    sound.start();
    microphone = plugIn(VirtualSound::Kind::microphone, "test_microphone");
    const auto player = plugIn(VirtualSound::Kind::player, "test_player");
    camera = std::make_unique<VirtualCamera>(sound.socket(), "test_camera");
    const double after = std::ceil(HostClock::seconds() + 1.2);
    sleepUntil(after + 0.5);
    const TakeBundle bundle = recording.stop();
    const EventLog log = bundle.readLog();
    const double offset = log.micStartOffset;

    const auto voice = beeps(bundle.file(TakeBundle::microphoneFile));
    const auto heardBefore = beepOf(before, voice, log, offset);
    const auto heardAfter = beepOf(after, voice, log, offset);
    ASSERT_TRUE(heardBefore && heardAfter);
    EXPECT_NEAR(*heardAfter - *heardBefore, after - before, soundTolerance) << "the gap has its length";
    const auto played = beepOf(after, beeps(bundle.file(TakeBundle::screenFile)), log, 0);
    ASSERT_TRUE(played);
    EXPECT_NEAR(*played, *heardAfter + offset, soundTolerance);

    const double screen = MovieReader::scanDuration(bundle.file(TakeBundle::screenFile));
    EXPECT_NEAR(decodeSound(bundle.file(TakeBundle::microphoneFile)).duration() + offset, screen, 0.3);
    EXPECT_NEAR(decodeSound(bundle.file(TakeBundle::screenFile)).duration(), screen, 0.05);
    const auto times = probeMovie(bundle.file(TakeBundle::webcamFile)).times();
    EXPECT_GT(std::ranges::count_if(times, [&](double time) { return time > screen - 1; }), 10)
        << "no pictures after the camera came back";
}

TEST_F(SoundAndCamera, TheTakeGoesOnInSilenceWhenTheServerIsGoneForGood) {
    const auto microphone = plugIn(VirtualSound::Kind::microphone, "test_microphone");
    const auto player = plugIn(VirtualSound::Kind::player, "test_player");
    const VirtualCamera camera(sound.socket(), "test_camera");
    auto recording = record({"--microphone", "--camera", "--system-audio"});
    const double last = std::ceil(HostClock::seconds() + 0.5);
    sleepUntil(last + 0.5);
    sound.stop();
    sleepUntil(last + 3.5);
    const TakeBundle bundle = recording.stop();
    const EventLog log = bundle.readLog();

    const double screen = MovieReader::scanDuration(bundle.file(TakeBundle::screenFile));
    const auto expectSilenceAfterwards = [&](std::string_view name, double offset, double tolerance) {
        const auto decoded = decodeSound(bundle.file(name));
        const auto heard = beepOf(last, beeps(bundle.file(name)), log, offset);
        ASSERT_TRUE(heard) << name;
        EXPECT_NEAR(decoded.duration() + offset, screen, tolerance) << name;
        EXPECT_LT(decoded.peak(*heard + 0.6, decoded.duration()), 0.02F) << name;
    };
    expectSilenceAfterwards(TakeBundle::microphoneFile, log.micStartOffset, 0.3);
    expectSilenceAfterwards(TakeBundle::screenFile, 0, 0.05);
    EXPECT_GT(screen, 3.4);
    EXPECT_NEAR(MovieReader::scanDuration(bundle.file(TakeBundle::webcamFile)) + log.webcamStartOffset,
                screen, 0.3);
}

TEST_F(SoundAndCamera, TheTakeFollowsTheDefaultDevices) {
    const auto deaf = plugIn(VirtualSound::Kind::deafMicrophone, "deaf");
    const auto player = plugIn(VirtualSound::Kind::player, "test_player");
    auto recording = record({"--microphone", "--system-audio"});
    const double before = std::ceil(HostClock::seconds() + 0.3);
    sleepUntil(before + 0.5);
    const auto microphone = plugIn(VirtualSound::Kind::microphone, "hears");
    const VirtualSoundCard card(sound.socket(), "card", {});
    ChildProcess choice(
        {"pw-metadata", "0", "default.configured.audio.source", R"({"name":"hears"})", "Spa:String:JSON"},
        sound.environment());
    ASSERT_EQ(choice.waitForExit(5s), 0) << choice.errors();
    const double after = std::ceil(HostClock::seconds() + 1.2);
    sleepUntil(after + 0.5);
    const TakeBundle bundle = recording.stop();
    const EventLog log = bundle.readLog();

    const auto voice = beeps(bundle.file(TakeBundle::microphoneFile));
    const auto played = beeps(bundle.file(TakeBundle::screenFile));
    EXPECT_FALSE(beepOf(before, voice, log, log.micStartOffset));
    const auto heardAfter = beepOf(after, voice, log, log.micStartOffset);
    const auto playedBefore = beepOf(before, played, log, 0);
    const auto playedAfter = beepOf(after, played, log, 0);
    ASSERT_TRUE(heardAfter && playedBefore && playedAfter) << recording.program().errors();
    const auto onCard = card.beepsPlayed();
    EXPECT_TRUE(std::ranges::any_of(onCard, [&](double time) { return std::abs(time - after) < 0.4; }))
        << "the player has moved there";
    EXPECT_NEAR(*playedAfter - *playedBefore, after - before, soundTolerance);
    EXPECT_NEAR(*heardAfter + log.micStartOffset - *playedBefore, after - before, soundTolerance);
}

TEST_F(SoundAndCamera, AKilledRecorderLosesAtMostASecondOfAnyFile) {
    const auto microphone = plugIn(VirtualSound::Kind::microphone, "test_microphone");
    const auto player = plugIn(VirtualSound::Kind::player, "test_player");
    const VirtualCamera camera(sound.socket(), "test_camera");
    auto recording = record({"--microphone", "--camera", "--system-audio"});
    const double begin = HostClock::seconds();
    std::this_thread::sleep_for(2300ms);
    const double length = HostClock::seconds() - begin;
    recording.program().signal(SIGKILL);
    ASSERT_EQ(recording.program().waitForExit(5s), 128 + SIGKILL);

    const TakeBundle bundle = recording.bundle();
    finishInterruptedTake(bundle);
    const EventLog log = bundle.readLog();
    EXPECT_TRUE(bundle.readEdit().webcam.enabled);
    EXPECT_LT(log.webcamStartOffset, 0);
    EXPECT_GT(log.micStartOffset, 0);
    const auto file = [&](std::string_view name) { return bundle.file(name); };
    EXPECT_GE(decodeSound(file(TakeBundle::microphoneFile)).duration() + log.micStartOffset, length - 1);
    EXPECT_GE(decodeSound(file(TakeBundle::screenFile)).duration(), length - 1);
    EXPECT_GE(MovieReader::scanDuration(file(TakeBundle::webcamFile)) + log.webcamStartOffset, length - 1);

    const auto voice = beeps(file(TakeBundle::microphoneFile));
    const auto played = beeps(file(TakeBundle::screenFile));
    ASSERT_FALSE(voice.empty() || played.empty());
    EXPECT_NEAR(offBeat(voice.back() + log.micStartOffset - played.back()), 0, soundTolerance);
}

}  // namespace
}  // namespace tessaloom::test
