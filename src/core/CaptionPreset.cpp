// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CaptionPreset.h"

namespace tessaloom {

CaptionStyle captionStyle(CaptionPreset preset, const CaptionStyle& base) {
    CaptionStyle style;
    style.fontScale = base.fontScale;
    style.verticalPosition = base.verticalPosition;
    switch (preset) {
        case CaptionPreset::classic:
            style.highlight = CaptionHighlight::none;
            break;
        case CaptionPreset::karaoke:
            style.backgroundOpacity = 0.85;
            break;
        case CaptionPreset::minimal:
            style.highlight = CaptionHighlight::underline;
            style.plate = CaptionPlate::none;
            break;
        case CaptionPreset::bold:
            style.highlightColor = "#5FC4E6";
            style.plate = CaptionPlate::none;
            style.uppercase = true;
            break;
    }
    return style;
}

}  // namespace tessaloom
