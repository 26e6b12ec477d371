// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "media/BgraImage.h"

namespace tessaloom {

/// A premultiplied picture with copies of half, quarter … its size, so that it stays smooth when it is drawn
/// much smaller than it was made.
class PictureLevels {
  public:
    explicit PictureLevels(BgraImage full);

    /// The smallest copy that is not magnified when it is drawn `width` pixels wide, else the full picture.
    BgraView forWidth(double width) const;

  private:
    std::vector<BgraImage> levels_;
};

}  // namespace tessaloom
