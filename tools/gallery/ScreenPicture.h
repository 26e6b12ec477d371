// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

#include "core/CaptureRect.h"
#include "core/RelativePoint.h"

namespace tessaloom::gallery {

/// The area that the made-up recording shows.
inline constexpr CaptureRect capturedArea{
    .x = 0, .y = 0, .width = 1280, .height = 720, .displayScaleFactor = 1.5};

/// The demonstration scene at rest, in the captured area's pixels, opaque. Needs a QGuiApplication.
QImage screenPicture();

/// A place on its button "Save" where a pointer leaves the words free, as fractions of the captured area.
RelativePoint saveButton();

}  // namespace tessaloom::gallery
