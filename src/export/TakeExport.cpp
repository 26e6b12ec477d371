// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/TakeExport.h"

namespace tessaloom {
namespace {

constexpr int longestGifSide = 720;

}  // namespace

double canvasAspect(const OpenTake& take, const ExportChoices& choices) {
    return canvasRatio(choices.shape.value_or(take.edit.aspect), take.recordingAspect);
}

Exporter::Settings exportSettings(const OpenTake& take, const ExportChoices& choices, double movieDuration) {
    const double aspect = canvasAspect(take, choices);
    return {
        .aspect = aspect,
        .segments = take.keptSegments(movieDuration),
        .wallpaper = take.wallpaper(),
        .outputLongEdge = outputLongEdge(choices.resolution, aspect),
        .bitsPerPixel = bitsPerPixel(choices.quality),
        .gifFPS = static_cast<double>(choices.gifFPS),
        .gifMaxDimension = longestGifSide,
        .gifLoop = choices.gifLoop.value_or(take.edit.gifLoop),
        .speed = take.edit.speed,
        .webcam = take.bundle.hasWebcam() ? std::optional(take.edit.webcam) : std::nullopt,
        .cursorStyle = take.edit.cursorStyle,
        .makeComposer = [take](Size imageSize, Point hotspot) { return take.composer(imageSize, hotspot); }};
}

}  // namespace tessaloom
