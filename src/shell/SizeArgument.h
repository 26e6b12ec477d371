// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include "export/CanvasSize.h"

namespace tessaloom {

/// Reads "WIDTHxHEIGHT", in pixels. Throws UsageError unless both are whole numbers from 1 to 16384.
CanvasSize parseSize(const QString& text);

}  // namespace tessaloom
