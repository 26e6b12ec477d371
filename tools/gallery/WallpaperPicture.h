// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

namespace tessaloom::gallery {

/// Hills at dusk, 1920 x 1080, opaque.
QImage wallpaperPicture();

}  // namespace tessaloom::gallery
