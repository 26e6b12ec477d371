// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>

#include "media/BgraImage.h"

namespace tessaloom {

/// Reads an image file (any format of pixels that Qt reads), turned upright, premultiplied. Nothing when it
/// can't be read or has more than 64 Mi pixels.
std::optional<BgraImage> readPictureFile(const std::filesystem::path& file);

/// Draws an image file of drawing instructions (SVG) in this size, in pixels, premultiplied. Nothing when it
/// can't be read. Only for files that the user's own desktop draws as well: there is no limit to the time
/// that some of them would take.
std::optional<BgraImage> drawPictureFile(const std::filesystem::path& file, int width, int height);

}  // namespace tessaloom
