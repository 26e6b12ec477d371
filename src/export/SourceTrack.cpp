// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/SourceTrack.h"

#include <utility>

namespace tessaloom {

SourceTrack::SourceTrack(HeldFrameReader* reader, std::size_t pictureCount)
    : reader_(reader), free_(pictureCount) {
    for (std::size_t i = 1; i < pictureCount; ++i)
        free_.push(std::make_unique<BgraImage>());
}

bool SourceTrack::read(double time, std::unique_ptr<BgraImage>& picture, const std::stop_token& stop) {
    const DecodedFrame* held = reader_ != nullptr ? reader_->frame(time, stop) : nullptr;
    if (stop.stop_requested()) return false;
    if (held == nullptr || held->time() == readTime_) return true;
    picture = free_.pop().value_or(nullptr);
    if (!picture) return false;
    held->toBgra(*picture);
    readTime_ = held->time();
    return true;
}

bool SourceTrack::show(std::unique_ptr<BgraImage> picture) {
    if (!picture) return false;
    free_.push(std::exchange(shown_, std::move(picture)));
    ++identity_;
    return true;
}

SourcePicture SourceTrack::shown() const {
    return {shown_->view(), identity_};
}

}  // namespace tessaloom
