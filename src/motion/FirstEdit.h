// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "core/TakeBundle.h"

namespace tessaloom {

/// What a recording's user chose for the camera bubble.
struct CameraChoice {
    WebcamConfig::Shape shape = WebcamConfig::Shape::circle;
    double relativeSize = 0.2;
    bool mirrored = false;
};

/// Turns the bubble on, as it was chosen.
void showCamera(EditParams& edit, const CameraChoice& camera);

/// Puts the zooms generated from a finished recording's log into its stored edit, the fresh one when that
/// can't be read, and shows the camera if one was recorded. Answers how many zooms there are. Throws
/// std::system_error.
std::size_t storeFirstEdit(const TakeBundle& bundle, const EventLog& log,
                           const std::optional<CameraChoice>& camera = std::nullopt);

}  // namespace tessaloom
