// SPDX-License-Identifier: GPL-3.0-or-later
#include "BenchTake.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include "Cost.h"
#include "core/EditParams.h"
#include "core/EventLog.h"
#include "media/ColorConversion.h"
#include "media/MovieWriter.h"
#include "motion/ZoomEngine.h"

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

constexpr int stillSeconds = 5;

std::uint32_t hash(std::uint32_t value) {
    value = (value ^ (value >> 16)) * 0x7FEB352DU;
    value = (value ^ (value >> 15)) * 0x846CA68BU;
    return value ^ (value >> 16);
}

/// A page of letter-like dots in words and lines.
BgraImage documentPage(int width, int pageHeight) {
    BgraImage page(width, pageHeight);
    for (int y = 0; y < pageHeight; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool margin = x < 200 || x >= width - 200 || y % 24 >= 14;
            const bool gap = hash(static_cast<std::uint32_t>(x / 60 * 7919 + y / 24)) % 5 == 0;
            const bool ink = hash(static_cast<std::uint32_t>(x / 2 * 104729 + y / 2)) % 3 == 0;
            const std::uint8_t shade = !margin && !gap && ink ? 40 : 250;
            std::uint8_t* pixel = page.row(y) + std::ptrdiff_t{4} * x;
            pixel[0] = pixel[1] = pixel[2] = shade;
            pixel[3] = 255;
        }
    }
    return page;
}

/// Whether the document scrolls at a time.
bool scrolls(const BenchTake& wanted, int n) {
    const auto rate = static_cast<int>(wanted.rate);
    return wanted.still ? n % (stillSeconds * rate) == 0 : n / rate % 2 == 0;
}

void recordScreen(const BenchTake& wanted, const fs::path& path) {
    const BgraImage page = documentPage(wanted.width, 4 * wanted.height);
    const auto writer =
        MovieWriter::create(path, {.container = MovieWriter::Container::fragmentedMovie,
                                   .video = H264Settings::capture(wanted.width, wanted.height)});
    YuvImage picture(wanted.width, wanted.height);
    int scroll = 0;
    for (int n = 0; n < wanted.seconds * wanted.rate; ++n) {
        if (!scrolls(wanted, n)) continue;
        scroll = (scroll + 4) % (3 * wanted.height);
        bgraToYuv({page.row(scroll), wanted.width, wanted.height, page.stride()}, picture, 0, 0);
        writer->appendVideo(picture, n / wanted.rate, 1 / wanted.rate);
        if (n % static_cast<int>(wanted.rate) == 0) writer->flush();
    }
    writer->finish();
}

EventLog recordInput(const BenchTake& wanted) {
    EventLog log;
    log.captureRect = {.x = 0,
                       .y = 0,
                       .width = static_cast<double>(wanted.width),
                       .height = static_cast<double>(wanted.height),
                       .displayScaleFactor = 1};
    for (int n = 0; n < wanted.seconds * 60; ++n) {
        const double t = n / 60.0;
        const double moved = wanted.still ? std::min(t, 1.0) : t;
        log.cursorSamples.push_back(
            {.pts = t, .x = 0.5 + 0.3 * std::sin(moved), .y = 0.5 + 0.3 * std::cos(1.3 * moved)});
    }
    for (int second = 1; second < wanted.seconds; second += wanted.still ? 20 : 4)
        log.events.push_back({.pts = static_cast<double>(second),
                              .type = InputEvent::EventType::leftClick,
                              .location = RelativePoint{0.3, 0.4},
                              .keyLabel = {}});
    return log;
}

/// Noise that swells and fades as often as syllables do.
void recordVoice(const BenchTake& wanted, const fs::path& path) {
    costOfCommand("ffmpeg -v error -nostdin -y -f lavfi -i anoisesrc=color=pink:amplitude=0.3:duration=" +
                  std::to_string(wanted.seconds) + ",tremolo=f=4 -c:a aac '" + path.string() + "'");
}

}  // namespace

TakeBundle makeBenchTake(const BenchTake& wanted, const fs::path& folder) {
    TakeBundle bundle = TakeBundle::create(folder / "bench.takes");
    recordScreen(wanted, bundle.file(TakeBundle::screenFile));
    const EventLog log = recordInput(wanted);
    bundle.write(log);
    EditParams edit;
    edit.zoomKeyframes = ZoomEngine{}.generate(log, logDuration(log));
    if (wanted.sound) {
        recordVoice(wanted, bundle.file(TakeBundle::microphoneFile));
        edit.music = MusicPreset::lofi;
    }
    bundle.write(edit);
    return bundle;
}

}  // namespace tessaloom
