// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/TakeExport.h"

#include "base/Log.h"
#include "export/OutputTimeline.h"

namespace tessaloom {
namespace {

constexpr int longestGifSide = 720;

std::vector<double> clickTimes(const ClickEffects& effects) {
    std::vector<double> times;
    times.reserve(effects.clicks().size());
    for (const ClickEffects::Click& click : effects.clicks())
        times.push_back(click.pts);
    return times;
}

}  // namespace

double canvasAspect(const OpenTake& take, const ExportChoices& choices) {
    return canvasRatio(choices.shape.value_or(take.edit.aspect), take.recordingAspect);
}

Exporter::Settings exportSettings(const OpenTake& take, const ExportChoices& choices, double movieDuration) {
    const double aspect = canvasAspect(take, choices);
    const double speed = exportSpeed(take.edit.speed);
    if (speed != take.edit.speed)
        qCWarning(Log::exporting) << "A recording can't be played at a speed of" << take.edit.speed
                                  << "- it is exported at normal speed.";
    return {
        .aspect = aspect,
        .segments = take.keptSegments(movieDuration),
        .wallpaper = take.wallpaper(),
        .musicURL = take.musicURL(),
        .musicVolume = take.edit.musicVolume,
        .micVolume = take.bundle.hasMic() ? take.edit.micVolume : 1,
        .outputLongEdge = outputLongEdge(choices.resolution, aspect),
        .bitsPerPixel = bitsPerPixel(choices.quality),
        .gifFPS = static_cast<double>(choices.gifFPS),
        .gifMaxDimension = longestGifSide,
        .gifLoop = choices.gifLoop.value_or(take.edit.gifLoop),
        .speed = speed,
        .webcam = take.bundle.hasWebcam() ? std::optional(take.edit.webcam) : std::nullopt,
        .cursorStyle = take.edit.cursorStyle,
        .micURL = take.micURL(),
        .clickSoundTimes = take.edit.clickSounds ? clickTimes(take.clickEffects) : std::vector<double>(),
        .makeComposer = [take](Size imageSize, Point hotspot) { return take.composer(imageSize, hotspot); }};
}

}  // namespace tessaloom
