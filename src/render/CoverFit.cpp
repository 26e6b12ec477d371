// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CoverFit.h"

namespace tessaloom {

CoverFit coverFit(BgraView picture, const Rect& target) {
    const double pictureAspect = static_cast<double>(picture.width) / picture.height;
    const double targetAspect = target.width / target.height;
    const double shownWidth = targetAspect > pictureAspect ? 1 : targetAspect / pictureAspect;
    const double shownHeight = targetAspect > pictureAspect ? pictureAspect / targetAspect : 1;
    return {{target.x, target.width, 0.5 - shownWidth * 0.5, shownWidth},
            {target.y, target.height, 0.5 - shownHeight * 0.5, shownHeight}};
}

}  // namespace tessaloom
