// SPDX-License-Identifier: GPL-3.0-or-later
#include "take/OpenTake.h"

#include <algorithm>
#include <utility>

namespace tessaloom {
namespace {

constexpr double defaultAspect = 16.0 / 9.0;
constexpr double defaultPointWidth = 2560;
constexpr double shortestTrim = 0.1;

struct Trim {
    double start = 0;
    double end = 0;
};

Trim trimWithin(const TrimRange& stored, double duration) {
    double end = stored.end.value_or(duration);
    if (duration > 0) end = std::min(end, duration);
    const double latestStart = std::max(end - shortestTrim, 0.0);
    return {std::max(std::min(stored.start, latestStart), 0.0), end};
}

CutInputs cutInputsOver(const EditParams& edit, double duration) {
    const Trim trim = trimWithin(edit.trim, duration);
    return {.trimStart = trim.start,
            .trimEnd = trim.end,
            .totalDuration = duration,
            .removeSilences = edit.removeSilences,
            .keptSegments = edit.keptSegments,
            .removeFillers = edit.removeFillers,
            .fillerRanges = edit.fillerRanges,
            .removedRanges = edit.removedRanges,
            .splitPoints = edit.splitPoints};
}

void deriveFixedValues(OpenTake& take) {
    const CaptureRect& area = take.log.captureRect;
    take.recordingAspect = area.height > 0 ? area.width / area.height : defaultAspect;
    take.capturePointWidth = area.width > 0 ? area.width : defaultPointWidth;
    take.recordingPixelSize = {area.width * area.displayScaleFactor, area.height * area.displayScaleFactor};
    take.totalDuration = logDuration(take.log);
}

void deriveTracks(OpenTake& take) {
    take.cursorTrack = CursorTrack(take.log.cursorSamples).smoothed(take.edit.cursorSmoothing);
    take.clickEffects = ClickEffects(take.log.events);
    take.keystrokeTrack = KeystrokeTrack(take.log.events);
    if (!take.edit.zoomKeyframes.empty() && take.totalDuration > 0)
        take.zoomTimeline = ZoomTimeline(take.edit.zoomKeyframes, take.totalDuration);
}

}  // namespace

OpenTake OpenTake::open(const TakeBundle& bundle) {
    OpenTake take;
    take.bundle = bundle;
    finishIfInterrupted(bundle, take.warnings);
    StoredRecords records = readRecords(bundle, take.warnings);
    take.edit = std::move(records.edit);
    take.log = std::move(records.log);
    deriveFixedValues(take);
    deriveTracks(take);
    const Trim trim = trimWithin(take.edit.trim, take.totalDuration);
    take.trimStart = trim.start;
    take.trimEnd = trim.end;
    return take;
}

CutInputs OpenTake::cutInputs() const {
    return cutInputsOver(edit, totalDuration);
}

std::vector<CameraBand> OpenTake::cameraBands() const {
    return tessaloom::cameraBands(cutInputs(), edit.cameraHiddenRanges);
}

std::vector<TimeSegment> OpenTake::keptSegments(double movieDuration) const {
    const double duration = totalDuration > 0 ? totalDuration : movieDuration;
    return validRanges(keptRanges(cutInputsOver(edit, duration)));
}

std::optional<std::filesystem::path> OpenTake::wallpaper() const {
    if (edit.background.style != Background::Style::wallpaper || edit.background.primary.empty())
        return std::nullopt;
    return bundle.file(edit.background.primary);
}

FrameComposer OpenTake::composer(Size cursorImageSize, Point cursorHotspot) const {
    const std::vector<CameraBand> bands = cameraBands();
    return {.zoom = zoomTimeline,
            .cursorTrack = cursorTrack,
            .clicks = clickEffects,
            .crop = edit.crop,
            .background = edit.background,
            .backgroundBlur = edit.backgroundBlur,
            .padding = edit.padding,
            .cornerRadius = edit.cornerRadius,
            .shadow = edit.shadow,
            .recordingAspect = recordingAspect,
            .capturePointWidth = capturePointWidth,
            .cursorImageSize = cursorImageSize,
            .cursorHotspot = cursorHotspot,
            .cursorVisible = edit.cursorVisible,
            .cursorScale = edit.cursorScale,
            .cursorBounce = edit.cursorBounce,
            .cursorHideIdle = edit.cursorHideIdle,
            .webcamConfig = bundle.hasWebcam() ? std::optional(edit.webcam) : std::nullopt,
            .cameraInitiallyShown = cameraInitiallyShown(bands),
            .cameraTransitions = cameraTransitions(bands),
            .keystrokes = keystrokeTrack,
            .keystrokesVisible = edit.showKeystrokes,
            .captions = CaptionTrack(edit.captions),
            .captionsVisible = edit.showCaptions,
            .captionStyle = edit.captionStyle};
}

}  // namespace tessaloom
