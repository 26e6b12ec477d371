// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/HeldFrameReader.h"

#include <utility>

namespace tessaloom {

HeldFrameReader::HeldFrameReader(std::unique_ptr<MovieReader> reader)
    : reader_(std::move(reader)), next_(reader_->next()) {}

const DecodedFrame* HeldFrameReader::frame(double time) {
    constexpr double tolerance = 0.000001;
    while (next_ && next_->time() <= time + tolerance) {
        held_ = std::move(next_);
        next_ = reader_->next();
    }
    return held_ ? &*held_ : nullptr;
}

}  // namespace tessaloom
