// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace tessaloom {

/// Takes an export's drawn frames, in the form that its format is written from. Used by one thread at a time.
template <typename Picture>
class FrameSink {
  public:
    virtual ~FrameSink() = default;

    /// `index` counts output frames and ascends; frames from before the recording's first picture are left
    /// out. `changed` is false where the picture is the one of the call before, and true at the first call.
    virtual void append(std::int64_t index, const Picture& picture, bool changed) = 0;
};

}  // namespace tessaloom
