// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>
#include <optional>

#include "media/BgraImage.h"

namespace tessaloom::test {

/// The number of the paint that `picture` shows of the demonstration scene, modulo
/// demo::CounterCode::counterLimit. `strip` is where the scene's row of cells lies in the picture, in its
/// pixels; it may be scaled and off the grid. Nothing when a cell is neither dark nor light, the parity is
/// wrong or the strip reaches outside.
std::optional<unsigned> readSceneCounter(const BgraView& picture, const QRectF& strip);

}  // namespace tessaloom::test
