// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>

#include "media/BgraImage.h"

namespace tessaloom {

/// Reads an image file (any format of pixels that Qt reads), turned upright, premultiplied. Nothing when it
/// can't be read or has more than 64 Mi pixels.
std::optional<BgraImage> readPictureFile(const std::filesystem::path& file);

}  // namespace tessaloom
