// SPDX-License-Identifier: GPL-3.0-or-later
// What it costs to decide what a frame shows, all of it on: zoom, pointer, ripples, key label and caption
// over an hour's log. The first goes through it as a player does, the other jumps as a user does.
#include <benchmark/benchmark.h>

#include "HourLog.h"
#include "motion/ZoomEngine.h"
#include "render/FrameComposer.h"

namespace tessaloom {
namespace {

std::vector<Caption> linesOver(double duration) {
    std::vector<Caption> lines;
    for (double start = 0; start < duration; start += 3)
        lines.push_back(
            {start, start + 2.8, "one two", {{"one", start, start + 1}, {"two", start + 1, start + 2}}});
    return lines;
}

FrameComposer composer() {
    const EventLog log = hourLog();
    const double duration = logDuration(log);
    FrameComposer composer;
    composer.zoom = ZoomTimeline(ZoomEngine{}.generate(log, duration), duration);
    composer.cursorTrack = CursorTrack(log.cursorSamples).smoothed(0.3);
    composer.clicks = ClickEffects(log.events);
    composer.keystrokes = KeystrokeTrack(log.events);
    composer.captions = CaptionTrack(linesOver(duration));
    composer.captionsVisible = true;
    composer.padding = 40;
    composer.cornerRadius = 12;
    composer.shadow = 0.35;
    composer.recordingAspect = 16.0 / 9;
    composer.capturePointWidth = 1920;
    composer.cursorImageSize = {24, 32};
    return composer;
}

void composeFrames(benchmark::State& state, int step) {
    constexpr int frames = 3600 * 60;
    const FrameComposer frameComposer = composer();
    int frame = 0;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(frameComposer.composeFrame(frame / 60.0, 1920, 1080));
        frame = (frame + step) % frames;
    }
}

BENCHMARK_CAPTURE(composeFrames, playing, 1);
BENCHMARK_CAPTURE(composeFrames, jumping, 99'991);

}  // namespace
}  // namespace tessaloom
