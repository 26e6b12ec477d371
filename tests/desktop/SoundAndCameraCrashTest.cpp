// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <functional>
#include <random>
#include <thread>

#include "base/HostClock.h"
#include "desktop/DesktopRecording.h"
#include "media/MovieReader.h"
#include "support/MountedFolder.h"
#include "support/SoundProbe.h"
#include "support/SoundServer.h"
#include "support/TestWindow.h"
#include "support/VirtualCamera.h"
#include "support/VirtualSound.h"
#include "support/XInjector.h"
#include "take/RecordingLibrary.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr double longestLoss = 1.0;

/// A desktop with a microphone, speakers that play and a camera, on which somebody works.
class EverythingRecorded : public ::testing::Test {
  protected:
    Environment environment() const {
        Environment environment = sound.environment();
        environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
        return environment;
    }
    void workWhile(const std::function<bool()>& more) {
        for (std::uint32_t step = 0; more(); ++step) {
            injector.moveTo({50 + static_cast<int>(step * 7 % 200), 50 + static_cast<int>(step * 5 % 150)});
            window.fill({0, 0, 200, 150}, step * 0x030507U);
            if (step % 30 == 10) injector.click();
            std::this_thread::sleep_for(15ms);
        }
    }
    void workFor(double seconds) {
        const double end = HostClock::seconds() + seconds;
        workWhile([end] { return HostClock::seconds() < end; });
    }
    /// Exports it, which also completes it first.
    void exportTo(const std::filesystem::path& file, const TakeBundle& bundle) {
        ChildProcess program(
            {TESSALOOM_PROGRAM, "export", bundle.url.string(), "-o", file.string(), "--resolution", "720p"},
            environment());
        ASSERT_EQ(program.waitForExit(100s), 0) << program.errors();
    }

    VirtualDesktop desktop{320, 240};
    XInjector injector{desktop.displayName()};
    TestWindow window{injector.connection(), {.rect = {20, 20, 200, 150}, .rgb = 0x2040C0}};
    SoundServer sound{desktop.environment()};
    VirtualSound microphone{sound.socket(), VirtualSound::Kind::microphone, "test_microphone"};
    VirtualSound player{sound.socket(), VirtualSound::Kind::player, "test_player"};
    VirtualCamera camera{sound.socket(), "test_camera"};
};

const std::vector<std::string> everything{"--microphone", "--camera", "--system-audio"};

/// Some moment of the given slice of time; together they cover it all.
class KilledAtRandom : public EverythingRecorded, public ::testing::WithParamInterface<int> {
  protected:
    /// Between `begin` and `begin` + `length`, in the slice that is this test's of so many.
    static double moment(double begin, double length, int slices) {
        std::minstd_rand random(std::random_device{}());
        const double within = std::uniform_real_distribution(0.0, 1.0)(random);
        return begin + length * (GetParam() + within) / slices;
    }
};

constexpr int startMoments = 4;
constexpr int takeMoments = 16;

TEST_P(KilledAtRandom, LosesAtMostASecondOfAnyFileAndExportsWithItsLog) {
    // Before a sixth of a second the first picture may still wait for the speakers' track to begin.
    const double killedAfter = moment(0.2, 3.2, takeMoments);
    SCOPED_TRACE("killed after " + std::to_string(killedAfter) + " s");
    DesktopRecording recording(environment(), everything);
    const double begin = HostClock::seconds();
    workFor(killedAfter);
    const double length = HostClock::seconds() - begin;
    recording.program().signal(SIGKILL);
    ASSERT_EQ(recording.program().waitForExit(5s), 128 + SIGKILL);

    const TakeBundle bundle = recording.bundle();
    const auto exported = recording.library() / "export.mp4";
    ASSERT_NO_FATAL_FAILURE(exportTo(exported, bundle));
    const EventLog log = bundle.readLog();
    const double least = length - longestLoss;
    const double screen = MovieReader::scanDuration(bundle.file(TakeBundle::screenFile));
    const double webcam = MovieReader::scanDuration(bundle.file(TakeBundle::webcamFile));
    EXPECT_GE(screen, least);
    EXPECT_GE(webcam + log.webcamStartOffset, least);
    EXPECT_GE(decodeSound(bundle.file(TakeBundle::screenFile)).duration(), least);
    EXPECT_GE(logDuration(log), least);
    if (least > 0) {
        const double voice = decodeSound(bundle.file(TakeBundle::microphoneFile)).duration();
        EXPECT_GE(voice + log.micStartOffset, least);
    }
    EXPECT_LT(log.webcamStartOffset, 0);
    EXPECT_GE(MovieReader::scanDuration(exported), std::max(least, 0.01));
    RecordProperty("killedAfterSeconds", std::to_string(killedAfter));
    RecordProperty("lostSeconds", std::to_string(std::max(0.0, length - std::min(screen, logDuration(log)))));
}

INSTANTIATE_TEST_SUITE_P(Moments, KilledAtRandom, ::testing::Range(0, takeMoments));

class KilledWhileItStarts : public KilledAtRandom {
  protected:
    std::unique_ptr<ChildProcess> startRecording(const char* countdown) {
        std::vector<std::string> command{TESSALOOM_PROGRAM, "record", "--countdown", countdown};
        command.insert(command.end(), everything.begin(), everything.end());
        return std::make_unique<ChildProcess>(command, programEnvironment(environment(), library.path()));
    }
    static bool isRecording(const ChildProcess& program) {
        return program.errors().find("Recording started") != std::string::npos;
    }

    TemporaryFolder library;
};

TEST_P(KilledWhileItStarts, LeavesNothingThatCannotBeOpenedAndTheNextOneWorks) {
    const double killedAfter = moment(0, 1.8, startMoments);
    SCOPED_TRACE("killed after " + std::to_string(killedAfter) + " s");
    const auto killed = startRecording("1");
    workFor(killedAfter);
    killed->signal(SIGKILL);
    ASSERT_EQ(killed->waitForExit(5s), 128 + SIGKILL) << killed->errors();
    RecordProperty("killedAfterSeconds", std::to_string(killedAfter));
    RecordProperty("wasRecording", std::to_string(static_cast<int>(isRecording(*killed))));

    // Less than a second was recorded: all of it may be lost, but what is left says so in words.
    for (const TakeBundle& bundle : RecordingLibrary(library.path()).recentBundles(1)) {
        const auto exported = library.path() / "export.mp4";
        ChildProcess program({TESSALOOM_PROGRAM, "export", bundle.url.string(), "-o", exported.string(),
                              "--resolution", "720p"},
                             environment());
        const int status = program.waitForExit(60s).value_or(-1);
        EXPECT_TRUE(status == 0 || (status == 1 && !program.errors().empty())) << status << program.errors();
        EXPECT_TRUE(status != 0 || MovieReader::scanDuration(exported) > 0);
    }
    std::this_thread::sleep_for(1s);  // takes are named by the second
    const auto next = startRecording("0");
    workWhile([&] { return next->running() && !isRecording(*next); });
    workFor(0.5);
    next->signal(SIGINT);
    ASSERT_EQ(next->waitForExit(20s), 0) << next->errors();
    const TakeBundle bundle{next->output().substr(0, next->output().find('\n'))};
    EXPECT_GT(MovieReader::scanDuration(bundle.file(TakeBundle::screenFile)), 0.4);
}

INSTANTIATE_TEST_SUITE_P(Moments, KilledWhileItStarts, ::testing::Range(0, startMoments));

TEST_F(EverythingRecorded, AFullDiskEndsItAndWhatFittedIsKept) {
    const TemporaryFolder library;
    const auto disk = MountedFolder::over(library.path(), "512k");
    if (!disk) GTEST_SKIP() << "this process isn't allowed to mount a small disk";
    std::vector<std::string> command{TESSALOOM_PROGRAM, "record", "--countdown", "0"};
    command.insert(command.end(), everything.begin(), everything.end());
    ChildProcess program(command, programEnvironment(environment(), library.path()));
    const double patience = HostClock::seconds() + 60;
    workWhile([&] { return program.running() && HostClock::seconds() < patience; });
    ASSERT_EQ(program.waitForExit(20s), 0) << program.errors();
    EXPECT_NE(program.errors().find("What was recorded until then is saved."), std::string::npos)
        << program.errors();

    const TakeBundle bundle{program.output().substr(0, program.output().find('\n'))};
    EXPECT_GT(MovieReader::scanDuration(bundle.file(TakeBundle::screenFile)), 0.4);
    EXPECT_GT(decodeSound(bundle.file(TakeBundle::screenFile)).duration(), 0.4);
    EXPECT_GT(decodeSound(bundle.file(TakeBundle::microphoneFile)).duration(), 0.4);
    EXPECT_GT(MovieReader::scanDuration(bundle.file(TakeBundle::webcamFile)), 0.4);
    const TemporaryFolder elsewhere;
    exportTo(elsewhere.path() / "export.mp4", bundle);
    EXPECT_GT(MovieReader::scanDuration(elsewhere.path() / "export.mp4"), 0.4);
}

}  // namespace
}  // namespace tessaloom::test
