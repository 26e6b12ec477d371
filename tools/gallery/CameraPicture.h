// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

namespace tessaloom::gallery {

/// Somebody who waves at the camera from a study, 1280 x 720, opaque.
QImage cameraPicture();

/// The same person in white on black.
QImage cameraMatte();

}  // namespace tessaloom::gallery
