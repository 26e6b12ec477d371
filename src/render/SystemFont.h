// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>

namespace tessaloom {

/// The desktop's user-interface font at a size in raster points. Unhinted, so that its shapes and measures
/// stay the same at every scale.
QFont systemFont(int size, QFont::Weight weight);

}  // namespace tessaloom
