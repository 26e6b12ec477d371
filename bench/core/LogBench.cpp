// SPDX-License-Identifier: GPL-3.0-or-later
// An hour's log on its way from the file and back, and what opening a take derives from it.
#include <benchmark/benchmark.h>

#include "HourLog.h"
#include "motion/ClickEffects.h"
#include "motion/CursorTrack.h"
#include "motion/KeystrokeTrack.h"
#include "motion/ZoomEngine.h"
#include "motion/ZoomTimeline.h"

namespace tessaloom {
namespace {

void countBytes(benchmark::State& state, const std::string& text) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void readLog(benchmark::State& state) {
    const std::string text = encode(hourLog());
    while (state.KeepRunning())
        benchmark::DoNotOptimize(decodeEventLog(text));
    countBytes(state, text);
}

void writeLog(benchmark::State& state) {
    const EventLog log = hourLog();
    std::string text;
    while (state.KeepRunning())
        text = encode(log);
    countBytes(state, text);
}

void generateZooms(benchmark::State& state) {
    const EventLog log = hourLog();
    while (state.KeepRunning())
        benchmark::DoNotOptimize(ZoomEngine{}.generate(log, logDuration(log)));
}

void buildZoomTimeline(benchmark::State& state) {
    const EventLog log = hourLog();
    const double duration = logDuration(log);
    const auto keyframes = ZoomEngine{}.generate(log, duration);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(ZoomTimeline(keyframes, duration));
    state.counters["keyframes"] = static_cast<double>(keyframes.size());
}

void buildSparseZoomTimeline(benchmark::State& state) {
    std::vector<ZoomKeyframe> keyframes;
    for (double start = 0; start < 1e9; start += 2e6)
        keyframes.push_back({Uuid::random(), start, start + 5, {0.5, 0.25, 0.5, 0.5}, 0.4, 0.8});
    std::size_t stored = 0;
    while (state.KeepRunning())
        stored = ZoomTimeline(keyframes, 1e9).storedCount();
    state.counters["stored"] = static_cast<double>(stored);
}

void buildCursorTrack(benchmark::State& state) {
    const EventLog log = hourLog();
    while (state.KeepRunning())
        benchmark::DoNotOptimize(CursorTrack(log.cursorSamples).smoothed(0.3));
}

void buildEventTracks(benchmark::State& state) {
    const EventLog log = hourLog();
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(ClickEffects(log.events));
        benchmark::DoNotOptimize(KeystrokeTrack(log.events));
    }
}

BENCHMARK(readLog)->Unit(benchmark::kMillisecond);
BENCHMARK(writeLog)->Unit(benchmark::kMillisecond);
BENCHMARK(generateZooms)->Unit(benchmark::kMillisecond);
BENCHMARK(buildZoomTimeline)->Unit(benchmark::kMillisecond);
BENCHMARK(buildSparseZoomTimeline)->Unit(benchmark::kMillisecond);
BENCHMARK(buildCursorTrack)->Unit(benchmark::kMillisecond);
BENCHMARK(buildEventTracks)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tessaloom
