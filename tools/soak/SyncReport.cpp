// SPDX-License-Identifier: GPL-3.0-or-later
#include "soak/SyncReport.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "media/MovieReader.h"
#include "support/PixelAt.h"
#include "support/SoundProbe.h"

namespace tessaloom::test {
namespace {

constexpr float beepLevel = 0.15F;
constexpr double beepSilence = 0.3;  ///< before each beep, at least
constexpr double nearEnough = 0.3;   ///< to be the same happening
constexpr double halfFrame = 0.5 / 60;
constexpr double halfCameraPicture = 0.5 / 30;
constexpr double longestDistance = 10;                 ///< milliseconds
constexpr double longestCameraDistance = 1000.0 / 30;  ///< a camera's picture

/// When the beeps of a file begin, in seconds since the first frame.
std::vector<double> beepsIn(const std::filesystem::path& file, double offset) {
    const DecodedSound sound = decodeSound(file);
    std::vector<double> beeps;
    for (auto time = sound.onsetAfterSilence(beepLevel, beepSilence); time;
         time = sound.onset(beepLevel, *time + 1 - beepSilence))
        beeps.push_back(*time + offset);
    return beeps;
}

std::vector<double> clicksIn(const EventLog& log) {
    std::vector<double> clicks;
    for (const InputEvent& event : log.events)
        if (event.isClick()) clicks.push_back(event.pts);
    return clicks;
}

/// How much later than it happened each is recorded, on average; not a number when one is missing.
double meanDelay(std::span<const double> happened, std::span<const double> recorded) {
    double sum = 0;
    for (const double time : happened) {
        const auto belongs = [&](double other) { return std::abs(other - time) < nearEnough; };
        const auto found = std::ranges::find_if(recorded, belongs);
        sum += found == recorded.end() ? std::nan("") : *found - time;
    }
    return sum / static_cast<double>(happened.size());
}

/// Those from `from` to `to`, in seconds since the first frame.
std::vector<double> within(std::span<const double> hostTimes, double begin, double from, double to) {
    std::vector<double> times;
    for (const double time : hostTimes)
        if (time - begin >= from && time - begin <= to) times.push_back(time - begin);
    return times;
}

std::vector<double> fullSeconds(double begin, double from, double to) {
    std::vector<double> seconds;
    for (double second = std::ceil(begin + from); second <= begin + to; ++second)
        seconds.push_back(second - begin);
    return seconds;
}

}  // namespace

RecordedHappenings RecordedHappenings::read(const TakeBundle& bundle, std::vector<double> flashes) {
    const EventLog log = bundle.readLog();
    RecordedHappenings recorded{
        .flashes = std::move(flashes),
        .clicks = clicksIn(log),
        .beepsPlayed = beepsIn(bundle.file(TakeBundle::screenFile), 0),
        .beepsHeard = beepsIn(bundle.file(TakeBundle::microphoneFile), log.micStartOffset),
        .cameraFlashes = std::nullopt};
    const auto camera = bundle.file(TakeBundle::webcamFile);
    if (!std::filesystem::exists(camera)) return recorded;
    recorded.cameraFlashes = cornerFlashes(camera);
    for (double& flash : *recorded.cameraFlashes)
        flash += log.webcamStartOffset;
    return recorded;
}

bool SyncReport::holds() const {
    return std::abs(speakers) <= longestDistance && std::abs(microphone) <= longestDistance &&
           std::abs(clicks) <= longestDistance && (!camera || std::abs(*camera) <= longestCameraDistance);
}

SyncReport reportSync(const Happenings& happened, const RecordedHappenings& recorded, double begin,
                      double from, double to) {
    const double picture = meanDelay(within(happened.flashes, begin, from, to), recorded.flashes) - halfFrame;
    const auto seconds = fullSeconds(begin, from, to);
    const auto later = [&](const auto& times, const auto& recordedTimes) {
        return 1000 * (meanDelay(times, recordedTimes) - picture);
    };
    SyncReport report{.from = from,
                      .to = to,
                      .speakers = later(within(happened.beepsPlayed, begin, from, to), recorded.beepsPlayed),
                      .microphone = later(seconds, recorded.beepsHeard),
                      .clicks = later(within(happened.clicks, begin, from, to), recorded.clicks),
                      .camera = std::nullopt};
    if (recorded.cameraFlashes)
        report.camera = later(seconds, *recorded.cameraFlashes) - 1000 * halfCameraPicture;
    return report;
}

std::vector<double> cornerFlashes(const std::filesystem::path& movie) {
    const auto reader = MovieReader::open(movie);
    BgraImage picture;
    std::vector<double> flashes;
    bool dark = false;
    while (const auto frame = reader->next()) {
        frame->toBgra(picture);
        const bool light = pixelAt(picture, 0, 0)[0] > 128;
        if (dark && light) flashes.push_back(frame->time());
        dark = !light;
    }
    return flashes;
}

}  // namespace tessaloom::test
