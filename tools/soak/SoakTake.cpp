// SPDX-License-Identifier: GPL-3.0-or-later
// Records a busy 1080p screen that changes sixty times a second, what the speakers play and a microphone, and
// says what came of it: how soon recordings start and stop, dropped frames, memory, and how far sound and
// picture are apart at the end. Arguments: the recorder, the scene's program, seconds.
#include <signal.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "base/HostClock.h"
#include "media/MovieReader.h"
#include "support/MovieProbe.h"
#include "support/PixelAt.h"
#include "support/SoundProbe.h"
#include "support/SoundServer.h"
#include "support/TemporaryFolder.h"
#include "support/TestWindow.h"
#include "support/VirtualDesktop.h"
#include "support/VirtualSound.h"
#include "support/XInjector.h"
#include "take/RecordingLibrary.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr int starts = 10;
constexpr float beepLevel = 0.15F;
constexpr int flashSide = 64;
constexpr double flashLength = 0.2;
constexpr double judgedSeconds = 15;

double medianOf(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
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

/// One run of the recorder.
class Take {
  public:
    Take(const std::string& recorder, Environment environment, const std::filesystem::path& library)
        : started_(HostClock::seconds()),
          program_({recorder, "record", "--countdown", "0", "--microphone", "--system-audio"},
                   withLibrary(std::move(environment), library)) {
        while (program_.errors().find("Recording started") == std::string::npos) {
            if (!program_.running()) throw std::runtime_error(program_.errors());
            std::this_thread::sleep_for(1ms);
        }
        startSeconds_ = HostClock::seconds() - started_;
    }

    /// From the program's start to the word that it records, the first frame included.
    double startSeconds() const { return startSeconds_; }
    pid_t process() const { return program_.id(); }

    /// From Ctrl-C to the program's end.
    double stop() {
        const double asked = HostClock::seconds();
        program_.signal(SIGINT);
        if (program_.waitForExit(60s) != 0) throw std::runtime_error(program_.errors());
        return HostClock::seconds() - asked;
    }

  private:
    static Environment withLibrary(Environment environment, const std::filesystem::path& library) {
        environment["TESSALOOM_LIBRARY"] = library.string();
        environment["TESSALOOM_CONFIG"] = (library / "settings.ini").string();
        environment["TESSALOOM_VERBOSE"] = "1";
        environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
        return environment;
    }

    double started_;
    ChildProcess program_;
    double startSeconds_ = 0;
};

/// The moments of the last seconds at which the screen's corner turned light, in seconds of the file.
std::vector<double> lastFlashes(const std::filesystem::path& movie, double length) {
    const auto reader =
        MovieReader::open(movie, MovieReader::TimeRange{std::max(0.0, length - judgedSeconds), length});
    BgraImage picture;
    std::vector<double> flashes;
    bool dark = false;
    while (const auto frame = reader->next()) {
        frame->toBgra(picture);
        const bool light = pixelAt(picture, flashSide / 2, flashSide / 2)[0] > 128;
        if (dark && light) flashes.push_back(frame->time());
        dark = !light;
    }
    return flashes;
}

/// How much later the beeps come than the flashes, on average, in milliseconds. A flash is drawn at any time
/// between two frames, so its picture is half a frame late on average, which is taken off.
double beepDelay(const DecodedSound& sound, double offset, const std::vector<double>& flashes) {
    double sum = 0;
    for (const double flash : flashes) {
        const auto beep = sound.onset(beepLevel, flash - offset - 0.3);
        sum += beep ? *beep + offset - flash : std::nan("");
    }
    return 1000 * (sum / static_cast<double>(flashes.size()) + 0.5 / 60);
}

/// How often the scene painted between two times of HostClock.
long paintsBetween(const std::filesystem::path& sceneLog, double from, double to) {
    std::ifstream log(sceneLog);
    long count = 0;
    for (std::string line; std::getline(log, line);) {
        const std::size_t host = line.find("\"host\":");
        if (host == std::string::npos) continue;
        const double time = std::stod(line.substr(host + 7));
        if (time >= from && time <= to) ++count;
    }
    return count;
}

struct Memory {
    long settled = 0;
    long atEnd = 0;
};

/// Flashes the corner at each full second.
Memory flashFor(double seconds, TestWindow& corner, pid_t recorder) {
    Memory memory;
    const double begin = HostClock::seconds();
    for (double second = std::ceil(begin + 0.1); second < begin + seconds; ++second) {
        sleepUntil(second);
        corner.fill({0, 0, flashSide, flashSide}, 0xFFFFFF);
        sleepUntil(second + flashLength);
        corner.fill({0, 0, flashSide, flashSide}, 0);
        memory.atEnd = residentKilobytes(recorder);
        if (second - begin < std::min(30.0, seconds / 3)) memory.settled = memory.atEnd;
    }
    return memory;
}

void measureStarts(const std::string& recorder, const Environment& environment) {
    std::vector<double> startSeconds;
    for (int round = 0; round < starts; ++round) {
        const TemporaryFolder library;
        Take take(recorder, environment, library.path());
        startSeconds.push_back(take.startSeconds());
        take.stop();
    }
    std::printf("start to first frame: median %.0f ms, longest %.0f ms of %d\n",
                1000 * medianOf(startSeconds), 1000 * *std::ranges::max_element(startSeconds), starts);
}

int run(const std::string& recorder, const std::string& sceneProgram, double seconds) {
    const VirtualDesktop desktop(1920, 1080);
    const XInjector injector(desktop.displayName());
    SoundServer sound(desktop.environment());
    const VirtualSound microphone(sound.socket(), VirtualSound::Kind::microphone, "soak_microphone");
    const VirtualSound player(sound.socket(), VirtualSound::Kind::player, "soak_player");
    const TemporaryFolder folder;

    measureStarts(recorder, sound.environment());

    const auto sceneLog = folder.path() / "scene.jsonl";
    ChildProcess scene({sceneProgram, "--full-screen", "--busy", "--log", sceneLog.string()},
                       desktop.environment());
    if (!scene.waitForOutput("ready\n", 10s)) throw std::runtime_error(scene.errors());
    TestWindow corner(injector.connection(), {.rect = {0, 0, flashSide, flashSide}, .rgb = 0});
    Take take(recorder, sound.environment(), folder.path());
    const Memory memory = flashFor(seconds, corner, take.process());
    std::printf("stop after %.0f s: %.0f ms\n", seconds, 1000 * take.stop());

    const TakeBundle bundle = RecordingLibrary(folder.path()).recentBundles(1).front();
    const auto movie = bundle.file(TakeBundle::screenFile);
    const auto times = probeMovie(movie).times();
    int missed = 0;
    for (std::size_t frame = 1; frame + 1 < times.size(); ++frame)
        missed += static_cast<int>(std::lround((times[frame] - times[frame - 1]) * 60)) - 1;
    const EventLog log = bundle.readLog();
    const double origin = static_cast<double>(log.streamStartHostTime) * 1e-9;
    std::printf("frames: %zu, points of the 60 Hz grid without one: %d; the scene painted %ld times\n",
                times.size(), missed, paintsBetween(sceneLog, origin, origin + times.back()));
    std::printf("memory: %ld kB when settled, %ld kB at the end\n", memory.settled, memory.atEnd);

    const double length = MovieReader::scanDuration(movie);
    const auto flashes = lastFlashes(movie, length);
    if (flashes.empty()) throw std::runtime_error("no flash in the last seconds");
    const double played = beepDelay(decodeSound(movie), 0, flashes);
    const auto voiceFile = bundle.file(TakeBundle::microphoneFile);
    const double voice = beepDelay(decodeSound(voiceFile), log.micStartOffset, flashes);
    std::printf("last %zu flashes of %.1f s: speakers %+.1f ms, microphone %+.1f ms after the picture\n",
                flashes.size(), length, played, voice);
    const bool together = std::abs(played) < 10 && std::abs(voice) < 10;
    const bool flat = memory.atEnd < memory.settled + 10'000;
    if (!together) std::puts("FAILED: sound and picture are apart");
    if (!flat) std::puts("FAILED: memory grows");
    return together && flat ? 0 : 1;
}

}  // namespace
}  // namespace tessaloom::test

int main(int count, char** arguments) {
    if (count != 4) {
        std::fputs("usage: soak_take RECORDER SCENE SECONDS\n", stderr);
        return 2;
    }
    try {
        return tessaloom::test::run(arguments[1], arguments[2], std::atof(arguments[3]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "soak_take: %s\n", error.what());
        return 1;
    }
}
