// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/BgraImage.h"

namespace tessaloom {

/// Fills all of `target` with the scaled middle of `source`, in proportion: what of it is too wide or too
/// high is left out at both sides alike. Bilinear; neither picture is empty.
void scaleToFill(const BgraView& source, BgraImage& target);

}  // namespace tessaloom
