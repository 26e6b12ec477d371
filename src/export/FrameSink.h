// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "export/FrameChange.h"

namespace tessaloom {

/// Takes an export's drawn frames, in the form that its format is written from. Used by one thread at a time.
template <typename Picture>
class FrameSink {
  public:
    virtual ~FrameSink() = default;

    /// `index` counts output frames and ascends; frames from before the recording's first picture are left
    /// out. At the first call the change is not `none`.
    virtual void append(std::int64_t index, const Picture& picture, FrameChange change) = 0;
};

}  // namespace tessaloom
