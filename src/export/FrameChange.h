// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tessaloom {

/// How an output frame differs from the one before it.
enum class FrameChange {
    /// In nothing.
    none,
    /// The view of the recording is the same; what it shows, or what lies over it, is not.
    content,
    /// The view moves: nearly every pixel is another.
    view,
};

}  // namespace tessaloom
