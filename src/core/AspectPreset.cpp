// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AspectPreset.h"

namespace tessaloom {

double canvasRatio(AspectPreset preset, double recordingRatio) {
    constexpr double wide = 16.0 / 9.0;
    switch (preset) {
        case AspectPreset::native:
            return recordingRatio > 0 ? recordingRatio : wide;
        case AspectPreset::wide:
            return wide;
        case AspectPreset::square:
            return 1;
        case AspectPreset::portrait:
            return 4.0 / 5.0;
        case AspectPreset::vertical:
            return 9.0 / 16.0;
    }
    return wide;
}

}  // namespace tessaloom
