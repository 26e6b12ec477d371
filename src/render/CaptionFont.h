// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "render/SystemFont.h"

namespace tessaloom {

/// The font of caption lines and of the marked words over them.
inline QFont captionFont() {
    constexpr int size = 90;
    return systemFont(size, QFont::Bold);
}

}  // namespace tessaloom
