// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>
#include <string>

#include "render/CursorImage.h"

namespace tessaloom {

/// Reads a cursor from the installed X cursor themes' files (no display needed): the first theme that has one
/// of the names, tried in order. Size and tip are those of the theme's 24-point image, the pixels those of a
/// bigger one where there is one.
std::optional<CursorImage> themeCursor(std::span<const char* const> names,
                                       std::span<const std::string> themes);

}  // namespace tessaloom
