// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/AudioMix.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/Resources.h"
#include "core/CutTimeline.h"
#include "core/DecodeError.h"
#include "export/ClickSounds.h"
#include "export/KeptSound.h"
#include "export/MusicBed.h"
#include "export/OutputTimeline.h"
#include "export/PeakLimiter.h"
#include "export/SoundSum.h"
#include "media/AudioReader.h"
#include "media/MediaError.h"
#include "media/TimeStretch.h"

namespace tessaloom {
namespace {

constexpr double underRecordedSound = 0.35;
constexpr double clickVolume = 0.5;
constexpr std::int64_t longestClick = 2 * soundRate;
/// 40 dB: what is louder is damage to the edit.
constexpr double greatestGain = 100;

double usableGain(double volume) {
    return volume > 0 ? std::min(volume, greatestGain) : 0;
}

/// Nothing when the file has pictures only.
std::unique_ptr<AudioReader> soundIn(const std::filesystem::path& file) {
    try {
        return AudioReader::open(file);
    } catch (const NoAudioTrack&) {
        return nullptr;
    }
}

double microphoneOffset(const TakeBundle& bundle) {
    try {
        return std::max(bundle.readLog().micStartOffset, 0.0);
    } catch (const DecodeError&) {
        return 0;
    } catch (const std::system_error&) {
        return 0;
    }
}

/// Cut and at the timeline's speed. False when the file has no sound.
bool addRecorded(SoundSum& sum, const std::filesystem::path& file, double offset, double gain,
                 const OutputTimeline& timeline) {
    auto reader = soundIn(file);
    if (!reader) return false;
    std::unique_ptr<SoundSource> sound =
        std::make_unique<KeptSound>(std::move(reader), timeline.segments(), offset);
    if (timeline.speed() != 1) sound = std::make_unique<TimeStretch>(std::move(sound), timeline.speed());
    sum.add(std::move(sound), gain);
    return true;
}

std::vector<StereoSample> clickSound() {
    const auto file = resource("click.wav");
    if (!file) return {};
    try {
        std::vector<StereoSample> click(longestClick);
        click.resize(AudioReader::open(*file)->read(0, click));
        return click;
    } catch (const MediaError&) {
        return {};
    }
}

/// Where each click of the recording is heard; one in a cut sounds where the cut was made.
std::vector<std::int64_t> clickStarts(const std::vector<double>& times, const OutputTimeline& timeline) {
    std::vector<std::int64_t> starts;
    starts.reserve(times.size());
    for (const double time : times)
        starts.push_back(soundPosition(resultTime(timeline.segments(), time) / timeline.speed()));
    return starts;
}

}  // namespace

std::optional<AudioMix> makeAudioMix(const TakeBundle& bundle, const Exporter::Settings& settings) {
    const OutputTimeline timeline(settings.segments, settings.speed, soundRate);
    auto sum = std::make_unique<SoundSum>();
    AudioMix mix{.sound = nullptr, .length = soundPosition(timeline.duration())};
    addRecorded(*sum, bundle.file(TakeBundle::screenFile), 0, 1, timeline);
    if (bundle.hasMic()) {
        const auto file = settings.micURL.value_or(bundle.file(TakeBundle::microphoneFile));
        addRecorded(*sum, file, microphoneOffset(bundle), usableGain(settings.micVolume), timeline);
    }
    if (settings.musicURL) {
        const double ducking = sum->empty() ? 1 : underRecordedSound;
        if (auto music = soundIn(*settings.musicURL))
            sum->add(std::make_unique<MusicBed>(std::move(music), mix.length),
                     usableGain(settings.musicVolume) * ducking);
    }
    if (!settings.clickSoundTimes.empty()) {
        if (auto click = clickSound(); !click.empty()) {
            auto clicks = std::make_unique<ClickSounds>(std::move(click),
                                                        clickStarts(settings.clickSoundTimes, timeline));
            mix.length = std::max(mix.length, clicks->end());
            sum->add(std::move(clicks), clickVolume);
        }
    }
    if (sum->empty()) return std::nullopt;
    mix.sound = std::make_unique<PeakLimiter>(std::move(sum));
    return mix;
}

}  // namespace tessaloom
