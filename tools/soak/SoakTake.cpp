// SPDX-License-Identifier: GPL-3.0-or-later
// Records a busy 1080p screen that changes sixty times a second, what the speakers play, a microphone and
// perhaps a camera, and says what came of it: what became of each paint, memory, how long the stop took, and
// how far sound, clicks and picture are apart at the start, in the middle and near the end. Its status is 1
// when a limit is broken.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "base/HostClock.h"
#include "demo-scene/SceneLayout.h"
#include "media/MovieReader.h"
#include "soak/RecorderRun.h"
#include "soak/SoakOptions.h"
#include "soak/SyncReport.h"
#include "support/FrameAudit.h"
#include "support/PixelAt.h"
#include "support/SceneCounter.h"
#include "support/SoundServer.h"
#include "support/TemporaryFolder.h"
#include "support/TestWindow.h"
#include "support/VirtualCamera.h"
#include "support/VirtualDesktop.h"
#include "support/VirtualSound.h"
#include "support/VirtualSoundCard.h"
#include "support/XInjector.h"
#include "take/RecordingLibrary.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr int width = 1920;
constexpr int height = 1080;
constexpr int flashSide = 64;
constexpr double settledAfter = 20;
constexpr long mostGrowth = 10'000;  ///< kilobytes
constexpr double longestPart = 15;   ///< of the take, in which sound and picture are compared

/// A 1080p desktop with a scene that paints sixty times a second, a sound card, a player and perhaps a
/// camera.
struct Desk {
    explicit Desk(const SoakOptions& options)
        : card(sound.socket(), "soak_speakers", {.clockError = options.clockError}),
          scene({options.scene, "--full-screen", "--busy", "--log", sceneLog().string()},
                desktop.environment()) {
        if (options.camera)
            camera = std::make_unique<VirtualCamera>(sound.socket(), "soak_camera",
                                                     VirtualCamera::Behaviour::delivers, options.clockError);
        if (!scene.waitForOutput("ready\n", 10s)) throw std::runtime_error(scene.errors());
    }

    std::filesystem::path sceneLog() const { return folder.path() / "scene.jsonl"; }
    std::vector<Paint> paints() const;

    VirtualDesktop desktop{width, height};
    TemporaryFolder folder;
    XInjector injector{desktop.displayName()};
    SoundServer sound{desktop.environment()};
    VirtualSoundCard card;
    VirtualSound microphone{sound.socket(), VirtualSound::Kind::microphone, "soak_microphone",
                            VirtualSoundCard::group};
    VirtualSound player{sound.socket(), VirtualSound::Kind::player, "soak_player"};
    std::unique_ptr<VirtualCamera> camera;
    ChildProcess scene;
};

double valueOf(const std::string& line, const std::string& name) {
    const std::size_t found = line.find('"' + name + "\":");
    return found == std::string::npos ? std::nan("") : std::stod(line.substr(found + name.size() + 3));
}

std::vector<Paint> Desk::paints() const {
    std::ifstream log(sceneLog());
    std::vector<Paint> paints;
    for (std::string line; std::getline(log, line);)
        paints.push_back({valueOf(line, "host"), static_cast<unsigned>(valueOf(line, "counter"))});
    return paints;
}

void sleepUntil(double hostTime) {
    std::this_thread::sleep_for(std::chrono::duration<double>(hostTime - HostClock::seconds()));
}

long residentKilobytes(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmRSS:")) return std::stol(line.substr(6));
    }
    return 0;
}

struct Memory {
    long settled = 0;  ///< kilobytes
    long atEnd = 0;

    bool isFlat() const { return atEnd < settled + mostGrowth; }
};

/// Clicks and flashes the screen's corner once a second. The flashes come a little later in the frame each
/// time, so that on average a picture is half a frame late.
class Performance {
  public:
    Performance(Desk& desk, pid_t recorder)
        : desk_(desk),
          recorder_(recorder),
          corner_(desk.injector.connection(), {.rect = {0, 0, flashSide, flashSide}, .rgb = 0}) {
        desk.injector.moveTo({flashSide / 2, flashSide / 2});
    }

    void playFor(double seconds) {
        const double begin = HostClock::seconds();
        for (double second = std::ceil(begin); second < begin + seconds - 1; ++second) {
            clickAt(second + 0.4);
            flashAt(second + 0.5 + std::fmod(second, 8) / 8 / 60);
            memory.atEnd = residentKilobytes(recorder_);
            if (second - begin <= std::min(settledAfter, seconds / 2)) memory.settled = memory.atEnd;
        }
        sleepUntil(begin + seconds);
    }

    Happenings happened;
    Memory memory;

  private:
    void clickAt(double hostTime) {
        sleepUntil(hostTime);
        happened.clicks.push_back(HostClock::seconds());
        desk_.injector.click();
    }
    void flashAt(double hostTime) {
        sleepUntil(hostTime);
        happened.flashes.push_back(HostClock::seconds());
        corner_.fill({0, 0, flashSide, flashSide}, 0xFFFFFF);
        sleepUntil(hostTime + 0.2);
        corner_.fill({0, 0, flashSide, flashSide}, 0);
    }

    Desk& desk_;
    pid_t recorder_;
    TestWindow corner_;
};

/// All frames with the scene's counters, and the times at which the corner turns light.
struct SeenFrames {
    std::vector<RecordedFrame> frames;
    std::vector<double> flashes;
};

SeenFrames readFrames(const std::filesystem::path& movie) {
    const QRectF strip = demo::SceneLayout::forSize({width, height}, true).counterStrip;
    const auto reader = MovieReader::open(movie);
    BgraImage picture;
    SeenFrames seen;
    bool dark = false;
    while (const auto frame = reader->next()) {
        frame->toBgra(picture);
        seen.frames.push_back({frame->time(), readSceneCounter(picture.view(), strip)});
        const bool light = pixelAt(picture, flashSide / 2, flashSide / 2)[0] > 128;
        if (dark && light) seen.flashes.push_back(frame->time());
        dark = !light;
    }
    return seen;
}

void print(const FrameAudit& audit, double length) {
    std::printf("frames: %zu of %zu paints in %.1f s (60 a second are %.0f)\n", audit.frames, audit.paints,
                length, 60 * length);
    std::printf(
        "  missed %zu, painted over within half a frame %zu, repeated %zu, out of order %zu, unreadable "
        "%zu\n",
        audit.missed(), audit.fleeting, audit.repeated, audit.outOfOrder, audit.unreadable);
    std::printf("  later than the promptest: %.1f ms on average, %.1f at most\n", 1000 * audit.meanDelay,
                1000 * audit.longestDelay);
}

void print(const SyncReport& report) {
    std::printf("%.0f to %.0f s, later than the picture: speakers %+.1f ms, microphone %+.1f, clicks %+.1f",
                report.from, report.to, report.speakers, report.microphone, report.clicks);
    if (report.camera) std::printf(", camera %+.1f", *report.camera);
    std::puts(report.holds() ? "" : "  FAILED: apart");
}

/// The lines in which the recorder says what went wrong, or what it couldn't keep up with.
void printComplaints(const std::string& messages) {
    for (const char* word : {"dropped", "behind"}) {
        std::size_t found = messages.find(word);
        if (found == std::string::npos) continue;
        const std::size_t start = messages.rfind('\n', found) + 1;
        std::printf("recorder: %s\n", messages.substr(start, messages.find('\n', found) - start).c_str());
    }
}

bool reportFrames(const SoakOptions& options, const FrameAudit& audit, double length) {
    print(audit, length);
    const bool enough = !options.mostMissed || static_cast<long>(audit.missed()) <= *options.mostMissed;
    if (!enough) std::puts("FAILED: frames are missing");
    return enough && audit.outOfOrder == 0;
}

bool reportMemory(const Memory& memory) {
    std::printf("memory: %ld kB when settled, %ld kB at the end\n", memory.settled, memory.atEnd);
    if (!memory.isFlat()) std::puts("FAILED: memory grows");
    return memory.isFlat();
}

bool reportSyncOf(const Happenings& happened, const RecordedHappenings& recorded, double begin,
                  double length) {
    const double first = 1;
    const double last = length - 1.5;
    const double part = std::min(longestPart, (last - first) / 3);
    bool holds = true;
    for (const double from : {first, (first + last - part) / 2, last - part}) {
        const SyncReport report = reportSync(happened, recorded, begin, from, from + part);
        print(report);
        holds = report.holds() && holds;
    }
    return holds;
}

int run(const SoakOptions& options) {
    Desk desk(options);
    std::vector<std::string> arguments{"--microphone", "--system-audio"};
    if (options.camera) arguments.emplace_back("--camera");
    RecorderRun take(options.recorder, desk.sound.environment(), desk.folder.path(), arguments);
    Performance performance(desk, take.process());
    performance.playFor(options.seconds);
    std::printf("stop after %.0f s: %.0f ms\n", options.seconds, 1000 * take.stop());
    printComplaints(take.messages());
    performance.happened.beepsPlayed = desk.card.beepsPlayed();

    const TakeBundle bundle = RecordingLibrary(desk.folder.path()).recentBundles(1).front();
    const auto movie = bundle.file(TakeBundle::screenFile);
    const double length = MovieReader::scanDuration(movie);
    // The first frame comes soon after the stream was made.
    const double begin = static_cast<double>(bundle.readLog().streamStartHostTime) * 1e-9;
    SeenFrames seen = readFrames(movie);
    const bool framesThere = reportFrames(options, auditFrames(desk.paints(), seen.frames, begin), length);
    const bool memoryFlat = reportMemory(performance.memory);
    const auto recorded = RecordedHappenings::read(bundle, std::move(seen.flashes));
    const bool together = reportSyncOf(performance.happened, recorded, begin, length);
    return framesThere && memoryFlat && together ? 0 : 1;
}

}  // namespace
}  // namespace tessaloom::test

int main(int count, char** arguments) {
    using tessaloom::test::SoakOptions;
    const auto options = SoakOptions::parse(count, arguments);
    if (!options) {
        std::fputs(SoakOptions::usage, stderr);
        return 2;
    }
    try {
        return tessaloom::test::run(*options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "soak_take: %s\n", error.what());
        return 1;
    }
}
