// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Background.h"
#include "core/CaptionStyle.h"
#include "core/Json.h"
#include "core/LogFields.h"
#include "core/WebcamConfig.h"

/// The stored keys of what the look of a recording is made of.
namespace tessaloom {

template <typename Coder, RecordOf<Background> Record>
void fields(Coder& coder, Record& background) {
    coder.field("style", background.style);
    coder.field("primary", background.primary);
    coder.field("secondary", background.secondary);
}

template <typename Coder, RecordOf<WebcamConfig> Record>
void fields(Coder& coder, Record& webcam) {
    coder.field("enabled", webcam.enabled);
    coder.field("shape", webcam.shape);
    coder.field("relativeSize", webcam.relativeSize);
    coder.field("position", webcam.position);
    coder.field("borderWidth", webcam.borderWidth);
    coder.field("borderColor", webcam.borderColor);
    coder.field("mirrored", webcam.mirrored);
    coder.field("blur", webcam.blur);
}

/// An older form knew only top or bottom.
inline void verticalPositionField(JsonReader& reader, double& position) {
    bool atTop = false;
    if (reader.field("verticalPosition", position) || !reader.field("atTop", atTop)) return;
    position = atTop ? 0.1 : 1.0;
}

inline void verticalPositionField(JsonWriter& writer, const double& position) {
    writer.field("verticalPosition", position);
}

template <typename Coder, RecordOf<CaptionStyle> Record>
void fields(Coder& coder, Record& style) {
    coder.field("fontScale", style.fontScale);
    coder.field("color", style.color);
    coder.field("background", style.background);
    coder.field("backgroundOpacity", style.backgroundOpacity);
    verticalPositionField(coder, style.verticalPosition);
    coder.field("highlight", style.highlight);
    coder.field("highlightColor", style.highlightColor);
    coder.field("plate", style.plate);
    coder.field("uppercase", style.uppercase);
}

}  // namespace tessaloom
