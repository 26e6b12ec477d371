// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Json.h"
#include "core/RelativeRect.h"
#include "core/ZoomKeyframe.h"

/// The stored keys of a zoom block.
namespace tessaloom {

template <typename Coder, RecordOf<RelativeRect> Record>
void fields(Coder& coder, Record& rect) {
    coder.field("x", rect.x);
    coder.field("y", rect.y);
    coder.field("width", rect.width);
    coder.field("height", rect.height);
}

template <typename Coder, RecordOf<ZoomKeyframe> Record>
void fields(Coder& coder, Record& keyframe) {
    coder.field("id", keyframe.id);
    coder.required("startPTS", keyframe.startPTS);
    coder.required("endPTS", keyframe.endPTS);
    coder.field("targetRect", keyframe.targetRect);
    coder.field("easeIn", keyframe.easeIn);
    coder.field("easeOut", keyframe.easeOut);
}

}  // namespace tessaloom
