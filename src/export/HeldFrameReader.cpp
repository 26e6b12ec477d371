// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/HeldFrameReader.h"

#include <utility>

namespace tessaloom {
namespace {

constexpr double tolerance = 0.000001;
/// A file whose key frames are far apart, or that doesn't tell where they are, isn't sought in often.
constexpr double patienceAfterUselessSkip = 8;

}  // namespace

HeldFrameReader::HeldFrameReader(std::unique_ptr<MovieReader> reader)
    : reader_(std::move(reader)), next_(reader_->next()) {}

const DecodedFrame* HeldFrameReader::frame(double time, const std::stop_token& stop) {
    if (next_ && time - next_->time() > longestReadOn_) skipTo(time);
    while (next_ && next_->time() <= time + tolerance && !stop.stop_requested()) {
        held_ = std::move(next_);
        next_ = reader_->next();
    }
    return held_ ? &*held_ : nullptr;
}

void HeldFrameReader::skipTo(double time) {
    const double before = next_->time();
    next_ = reader_->skipTo(time);
    if (next_ && next_->time() <= before) longestReadOn_ *= patienceAfterUselessSkip;
}

}  // namespace tessaloom
