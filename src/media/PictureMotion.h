// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tessaloom {

/// How a picture of a movie differs from the one before.
enum class PictureMotion {
    /// Not at all.
    none,
    /// Nearly all of it stays in place.
    still,
    /// Nearly every pixel is another.
    moving,
};

}  // namespace tessaloom
