// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>

#include "media/DecodedFrame.h"
#include "media/MovieReader.h"

namespace tessaloom {

/// A movie as a picture that changes with time: each picture holds until the next one begins, the last one
/// for ever. Times asked for must not descend. Used by one thread at a time.
class HeldFrameReader {
  public:
    explicit HeldFrameReader(std::unique_ptr<MovieReader> reader);

    /// The picture in force at `time` in seconds; null before the first one. Valid until the next call.
    const DecodedFrame* frame(double time);

  private:
    std::unique_ptr<MovieReader> reader_;
    std::optional<DecodedFrame> next_;
    std::optional<DecodedFrame> held_;
};

}  // namespace tessaloom
