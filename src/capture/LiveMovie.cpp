// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/LiveMovie.h"

#include <algorithm>
#include <chrono>

#include "base/HostClock.h"
#include "base/Log.h"
#include "media/ColorConversion.h"
#include "media/MediaError.h"

namespace tessaloom {
namespace {

/// Half of what may be lost, so that a late flush still keeps the promise.
constexpr std::chrono::milliseconds flushInterval{500};
constexpr std::chrono::milliseconds startInterval{50};
constexpr double frameDuration = 1.0 / 60.0;
constexpr double shortestStep = 0.001;
/// A device that was silent for so long has nothing more to say about that time.
constexpr double longestSoundDelay = 2.0;
/// Enough for the encoder to begin the track, without which nothing can be flushed; a device that has said
/// nothing by then isn't waited for.
constexpr double leastSound = 0.1;

}  // namespace

LiveMovie::LiveMovie(const std::filesystem::path& file, MovieWriter::Settings settings, LogCategory category)
    : settings_(std::move(settings)),
      category_(category),
      writer_(MovieWriter::create(file, settings_)),
      picture_(settings_.video->width, settings_.video->height),
      starter_(startInterval, [this] { return beginTracks(); }),
      flusher_(flushInterval, [this] { return flushRegularly(); }) {}

LiveMovie::~LiveMovie() = default;

void LiveMovie::append(std::span<const ScreenPatch> patches, double time) {
    const std::lock_guard guard(lock_);
    for (const ScreenPatch& patch : patches)
        bgraToYuv(patch.pixels, picture_, patch.x, patch.y);
    if (!origin_) begin(time);
    writeSound();
    encode(time);
    writeSound();
    if (!playable_) flush();
}

void LiveMovie::appendSound(const SoundChunk& chunk) {
    {
        const std::lock_guard guard(waitingLock_);
        waiting_.push_back({chunk.hostTime, {chunk.samples.begin(), chunk.samples.end()}});
    }
    // On a busy machine the next picture is encoded as soon as one is done, and the sound server loses what
    // nobody takes from it.
    const std::unique_lock guard(lock_, std::try_to_lock);
    if (!guard) return;
    writeSound();
    if (sound_ && !playable_) flush();
}

void LiveMovie::writeSound() {
    std::vector<WaitingSound> chunks;
    {
        const std::lock_guard guard(waitingLock_);
        chunks.swap(waiting_);
    }
    if (!sound_) return;
    for (const auto& [hostTime, samples] : chunks)
        sound_->append({.hostTime = hostTime, .samples = samples});
}

void LiveMovie::finish(double endTime) {
    starter_.stop();
    flusher_.stop();
    const std::lock_guard guard(lock_);
    const double lastFrame = endTime - frameDuration;
    // Two frames must not fall on one tick of the movie's clock.
    if (origin_ && lastFrame > lastTime_ + shortestStep) encode(lastFrame);
    writeSound();
    if (sound_) sound_->padTo(endTime);
    writer_->finish();
}

void LiveMovie::begin(double time) {
    origin_ = time;
    if (!settings_.sound) return;
    const SoundFormat format{.sampleRate = settings_.sound->sampleRate,
                             .channels = settings_.sound->channels};
    sound_.emplace(format, format.sampleRate, time,
                   [this](std::span<const float> samples) { writer_->appendSound(samples); });
}

void LiveMovie::encode(double time) {
    writer_->appendVideo(picture_, time - *origin_, frameDuration);
    lastTime_ = time;
}

/// From the first time that all tracks have something, the file can be played, whatever happens.
void LiveMovie::flush() {
    playable_ = writer_->flush() || playable_;
}

/// Of a recorder that dies soon after its first picture, something is there nevertheless.
bool LiveMovie::beginTracks() {
    const std::lock_guard guard(lock_);
    if (playable_) return false;
    const bool isDue = origin_ && HostClock::seconds() > *origin_ + leastSound;
    return !isDue || flushTo(*origin_ + leastSound);
}

bool LiveMovie::flushRegularly() {
    const std::lock_guard guard(lock_);
    return flushTo(HostClock::seconds() - longestSoundDelay);
}

/// With silence up to this time where there is no sound yet.
bool LiveMovie::flushTo(double hostTime) {
    try {
        writeSound();
        if (sound_) sound_->padTo(hostTime);
        flush();
        return true;
    } catch (const MediaError& error) {
        // The next frame meets the same error where it ends the recording.
        qCCritical(category_, "Failed to write the recording: %s", error.what());
        return false;
    }
}

}  // namespace tessaloom
