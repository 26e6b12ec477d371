// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/BgraImage.h"

namespace tessaloom {

/// Puts a soft black shadow under what is drawn on a premultiplied raster of `rasterScale` pixels per point:
/// two points down, spreading over eight.
void addTextShadow(BgraImage& raster);

}  // namespace tessaloom
