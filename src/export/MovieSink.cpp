// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/MovieSink.h"

#include <utility>

namespace tessaloom {

namespace {

PictureMotion motionOf(FrameChange change) {
    switch (change) {
        case FrameChange::none:
            return PictureMotion::none;
        case FrameChange::content:
            return PictureMotion::still;
        case FrameChange::view:
            break;
    }
    return PictureMotion::moving;
}

}  // namespace

MovieSink::MovieSink(std::unique_ptr<MovieWriter> writer, std::optional<AudioMix> mix, std::stop_token stop)
    : writer_(std::move(writer)), stop_(std::move(stop)) {
    if (mix) sound_.emplace(std::move(*mix), *writer_);
}

void MovieSink::append(std::int64_t index, const YuvImage& picture, FrameChange change) {
    const double time = static_cast<double>(index) / framesPerSecond;
    constexpr double duration = 1 / framesPerSecond;
    writer_->appendVideo(picture, time, duration, motionOf(change));
    if (sound_) sound_->pumpTo(time + duration, stop_);
}

void MovieSink::finish() {
    if (sound_) sound_->finish(stop_);
    writer_->finish();
}

}  // namespace tessaloom
