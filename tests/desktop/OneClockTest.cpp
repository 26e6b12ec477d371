// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>

#include "base/HostClock.h"
#include "desktop/DesktopRecording.h"
#include "media/MovieReader.h"
#include "support/SoundProbe.h"
#include "support/SoundServer.h"
#include "support/TestWindow.h"
#include "support/VirtualCamera.h"
#include "support/VirtualSound.h"
#include "support/VirtualSoundCard.h"
#include "support/VirtualWorld.h"
#include "support/XInjector.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr double clockError = 5000e-6;
constexpr double takeLength = 60;
/// Each end of the take is judged by the middle of what happens in so many seconds.
constexpr double endLength = 7;
constexpr float beepLevel = 0.15F;
constexpr double sameHappening = 0.4;
constexpr double tolerance = 0.010;
constexpr double screenFrame = 1.0 / 60;
constexpr double cameraFrame = 1.0 / 30;

using Times = std::vector<double>;

void sleepUntil(double hostTime) {
    std::this_thread::sleep_for(std::chrono::duration<double>(hostTime - HostClock::seconds()));
}

/// When things were done to the desktop, in HostClock seconds.
struct Deeds {
    Times flashes;
    Times clicks;
    Times keys;
};

/// At each full second from `begin` to `end` a window flashes, and a button and a key are pressed.
Deeds actAtFullSeconds(XInjector& injector, double begin, double end) {
    TestWindow window(injector.connection(), {.rect = {0, 0, 100, 100}, .rgb = 0});
    const auto doNow = [](Times& times, const auto& deed) {
        const double before = HostClock::seconds();
        deed();
        times.push_back((before + HostClock::seconds()) / 2);
    };
    Deeds deeds;
    for (double second = begin; second < end; ++second) {
        sleepUntil(second);
        doNow(deeds.flashes, [&] { window.fill({0, 0, 100, 100}, 0xFFFFFF); });
        doNow(deeds.clicks, [&] { injector.click(); });
        doNow(deeds.keys, [&] { injector.tapKey("F5"); });
        sleepUntil(second + 0.2);
        window.fill({0, 0, 100, 100}, 0);
    }
    return deeds;
}

/// When the movie turns from dark to light.
Times flashesIn(const std::filesystem::path& file) {
    const auto movie = MovieReader::open(file);
    BgraImage picture;
    Times times;
    bool dark = false;
    while (const auto frame = movie->next()) {
        frame->toBgra(picture);
        const bool light = (colorAt(picture, 50, 50) & 0xFFU) > 128;
        if (dark && light) times.push_back(frame->time());
        dark = !light;
    }
    return times;
}

Times beepsIn(const std::filesystem::path& file) {
    const auto decoded = decodeSound(file);
    Times times;
    for (auto time = decoded.onset(beepLevel); time; time = decoded.onset(beepLevel, *time + 0.5))
        times.push_back(*time);
    return times;
}

Times eventsIn(const EventLog& log, const auto& isWanted) {
    Times times;
    for (const InputEvent& event : log.events)
        if (isWanted(event)) times.push_back(event.pts);
    return times;
}

Times plus(Times times, double offset) {
    for (double& time : times)
        time += offset;
    return times;
}

double median(Times values) {
    if (values.empty()) return std::nan("");
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// What happened, in HostClock seconds, and where the take has it, in its own.
struct Track {
    const char* name;
    Times happened;
    Times recorded;
    double tolerance;

    /// The HostClock time of the take's time zero, by what happened from `from` to `to`.
    double origin(double from, double to, double nearly) const {
        Times origins;
        for (const double time : happened) {
            if (time < from || time > to) continue;
            const auto belongs = [&](double other) {
                return std::abs(nearly + other - time) < sameHappening;
            };
            const auto found = std::ranges::find_if(recorded, belongs);
            if (found != recorded.end()) origins.push_back(time - *found);
        }
        return origins.size() < 3 ? std::nan("") : median(origins);
    }
};

TEST(OneClock, AllThatIsRecordedStaysTogetherForAMinuteThoughTheDevicesClocksAreFast) {
    VirtualWorld::StillUntil still(std::numeric_limits<double>::infinity());
    VirtualDesktop desktop(320, 240);
    XInjector injector(desktop.displayName());
    const SoundServer sound(desktop.environment());
    const VirtualSoundCard card(sound.socket(), "card", {.clockError = clockError});
    const VirtualSound microphone(sound.socket(), VirtualSound::Kind::microphone, "test_microphone",
                                  VirtualSoundCard::group);
    const VirtualSound player(sound.socket(), VirtualSound::Kind::player, "test_player");
    const VirtualCamera camera(sound.socket(), "test_camera", VirtualCamera::Behaviour::delivers, clockError);
    Environment environment = sound.environment();
    environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
    DesktopRecording recording(environment, {"--microphone", "--camera", "--system-audio"});

    const double first = std::ceil(HostClock::seconds() + 0.5);
    const double last = first + takeLength;
    still.setEnd(first);
    const Deeds deeds = actAtFullSeconds(injector, first, last);
    const TakeBundle bundle = recording.stop();
    const EventLog log = bundle.readLog();

    Times seconds;
    for (double second = first; second < last; ++second)
        seconds.push_back(second);
    const auto file = [&](std::string_view name) { return bundle.file(name); };
    const auto isClick = [](const InputEvent& event) { return event.isClick(); };
    const auto isKey = [](const InputEvent& event) { return event.type == InputEvent::EventType::keyDown; };
    const std::vector<Track> tracks{
        {"click", deeds.clicks, eventsIn(log, isClick), tolerance},
        {"key", deeds.keys, eventsIn(log, isKey), tolerance},
        {"voice", seconds, plus(beepsIn(file(TakeBundle::microphoneFile)), log.micStartOffset), tolerance},
        {"played", card.beepsPlayed(), beepsIn(file(TakeBundle::screenFile)), tolerance},
        {"screen", deeds.flashes, flashesIn(file(TakeBundle::screenFile)), screenFrame},
        {"camera", seconds, plus(flashesIn(file(TakeBundle::webcamFile)), log.webcamStartOffset),
         cameraFrame}};

    // Nothing happened before the first second: what came first tells which second it was.
    const double begin = deeds.clicks.front() - tracks.front().recorded.at(0);
    EXPECT_NEAR(begin, static_cast<double>(log.streamStartHostTime) * 1e-9, 0.3);
    for (const Track& track : tracks) {
        ASSERT_FALSE(track.recorded.empty()) << track.name << recording.program().errors();
        EXPECT_NEAR(begin + track.recorded.front(), first, sameHappening) << track.name;
        const double atStart = track.origin(first, first + endLength, begin) - begin;
        const double atEnd = track.origin(last - endLength, last, begin) - begin;
        EXPECT_NEAR(atStart, 0, track.tolerance) << track.name << " at the start";
        EXPECT_NEAR(atEnd, 0, track.tolerance) << track.name << " at the end";
        RecordProperty(std::string(track.name) + "Milliseconds",
                       std::to_string(1000 * atStart) + " to " + std::to_string(1000 * atEnd));
    }
    EXPECT_LE(log.webcamStartOffset, 0);
    EXPECT_GE(log.micStartOffset, 0);
}

}  // namespace
}  // namespace tessaloom::test
