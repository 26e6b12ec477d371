// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ScreenMovie.h"

#include <chrono>

#include "base/Log.h"
#include "media/ColorConversion.h"
#include "media/MediaError.h"

namespace tessaloom {
namespace {

/// Half of what may be lost, so that a late flush still keeps the promise.
constexpr std::chrono::milliseconds flushInterval{500};
constexpr double frameDuration = 1.0 / 60.0;
constexpr double shortestStep = 0.001;

}  // namespace

ScreenMovie::ScreenMovie(std::unique_ptr<MovieWriter> writer, int width, int height)
    : writer_(std::move(writer)),
      picture_(width, height),
      flusher_([this](const std::stop_token& stop) { flushRegularly(stop); }) {}

ScreenMovie::~ScreenMovie() = default;

void ScreenMovie::append(std::span<const ScreenPatch> patches, double time) {
    const std::lock_guard guard(lock_);
    for (const ScreenPatch& patch : patches)
        bgraToYuv(patch.pixels, picture_, patch.x, patch.y);
    encode(time);
}

void ScreenMovie::finish(double endTime) {
    flusher_.request_stop();
    const std::lock_guard guard(lock_);
    const double lastFrame = endTime - frameDuration;
    // Two frames must not fall on one tick of the movie's clock.
    if (lastFrame > lastTime_ + shortestStep) encode(lastFrame);
    writer_->finish();
}

void ScreenMovie::encode(double time) {
    const bool isFirst = lastTime_ < 0;
    writer_->appendVideo(picture_, time, frameDuration);
    lastTime_ = time;
    if (isFirst) writer_->flush();  // from here on the file can be played, whatever happens
}

void ScreenMovie::flushRegularly(const std::stop_token& stop) {
    std::unique_lock guard(lock_);
    while (!stop.stop_requested()) {
        wakeUp_.wait_for(guard, stop, flushInterval, [] { return false; });
        if (stop.stop_requested()) return;
        try {
            writer_->flush();
        } catch (const MediaError& error) {
            // The next frame meets the same error where it ends the recording.
            qCCritical(Log::screenCapture, "Failed to write the recording: %s", error.what());
            return;
        }
    }
}

}  // namespace tessaloom
