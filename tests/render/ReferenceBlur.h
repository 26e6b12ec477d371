// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/BgraImage.h"
#include "render/ReferenceStages.h"

namespace tessaloom::test {

/// A picture under a Gaussian of `sigma` pixels, its edges repeated outwards, summed tap by tap.
ReferenceCanvas referenceBlur(BgraView picture, double sigma);

/// To the nearest step.
BgraImage rounded(const ReferenceCanvas& canvas);

}  // namespace tessaloom::test
