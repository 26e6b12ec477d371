// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "media/BgraImage.h"
#include "media/Rotation.h"

struct AVFrame;

namespace tessaloom {

/// One picture of a movie as its decoder left it. Copies share the pixels, which never change; they stay
/// valid after the reader is gone. Callable from any thread.
class DecodedFrame {
  public:
    DecodedFrame(std::shared_ptr<const AVFrame> frame, double time, Rotation rotation);

    /// When it begins to be shown, in seconds of the movie's own timeline.
    double time() const { return time_; }
    /// As it is to be shown, turned as the movie says.
    int width() const;
    int height() const;

    /// Converts by the frame's colour tags, BT.709 limited where it has none. `target` becomes a new picture
    /// of this size when it has another one. Throws UnreadableMovie for a form of pixels that can't be shown.
    void toBgra(BgraImage& target) const;

  private:
    std::shared_ptr<const AVFrame> frame_;
    double time_;
    Rotation rotation_;
};

}  // namespace tessaloom
