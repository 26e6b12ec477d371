// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <stop_token>

#include "media/DecodedFrame.h"
#include "media/MovieReader.h"

namespace tessaloom {

/// A movie as a picture that changes with time: each picture holds until the next one begins, the last one
/// for ever. Times asked for must not descend. Used by one thread at a time.
class HeldFrameReader {
  public:
    explicit HeldFrameReader(std::unique_ptr<MovieReader> reader);

    /// The picture in force at `time` in seconds; null before the first one. Valid until the next call. Once
    /// `stop` is requested, an earlier one.
    const DecodedFrame* frame(double time, const std::stop_token& stop = {});

  private:
    void skipTo(double time);

    std::unique_ptr<MovieReader> reader_;
    std::optional<DecodedFrame> next_;
    std::optional<DecodedFrame> held_;
    /// Seconds that are read through: key frames are not much closer to each other.
    double longestReadOn_ = 2;
};

}  // namespace tessaloom
