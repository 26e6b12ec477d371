// SPDX-License-Identifier: GPL-3.0-or-later
// Exports a recording and compares the time with what FFmpeg's command line needs to decode and encode it
// at the same size with the same encoder settings and 60 frames a second. Pair by pair, so that both meet the
// same load. Needs the ffmpeg program. Arguments: a recording's bundle, or else the seconds (10) and frames a
// second (60) of a made one (1920x1080, a scrolling document, a pointer, zooms), and --rounds N (1).
#include <sys/resource.h>

#include <QCommandLineParser>
#include <QGuiApplication>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include "export/TakeExport.h"
#include "media/ColorConversion.h"
#include "media/MovieReader.h"
#include "media/MovieWriter.h"
#include "motion/ZoomEngine.h"
#include "render/CpuRenderer.h"

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

constexpr int width = 1920;
constexpr int height = 1080;

struct Cost {
    double wallSeconds = 0;
    double cpuSeconds = 0;
};

double cpuSecondsOf(int who) {
    rusage usage{};
    getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double cpuSeconds() {
    return cpuSecondsOf(RUSAGE_SELF) + cpuSecondsOf(RUSAGE_CHILDREN);
}

Cost costOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    const double startCpu = cpuSeconds();
    work();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return {wall.count(), cpuSeconds() - startCpu};
}

std::uint32_t hash(std::uint32_t value) {
    value = (value ^ (value >> 16)) * 0x7FEB352DU;
    value = (value ^ (value >> 15)) * 0x846CA68BU;
    return value ^ (value >> 16);
}

/// A page of letter-like dots in words and lines.
BgraImage documentPage(int pageHeight) {
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

/// Scrolls for a second and rests for a second, in turn.
void recordScreen(const fs::path& path, double seconds, double rate) {
    const BgraImage page = documentPage(4 * height);
    const auto writer = MovieWriter::create(path, {.container = MovieWriter::Container::fragmentedMovie,
                                                   .video = H264Settings::capture(width, height)});
    YuvImage picture(width, height);
    int scroll = 0;
    for (int n = 0; n < seconds * rate; ++n) {
        const double time = n / rate;
        if (static_cast<int>(time) % 2 == 1) continue;
        scroll = (scroll + 4) % (3 * height);
        bgraToYuv({page.row(scroll), width, height, page.stride()}, picture, 0, 0);
        writer->appendVideo(picture, time, 1 / rate);
        if (n % static_cast<int>(rate) == 0) writer->flush();
    }
    writer->finish();
}

TakeBundle makeTake(const fs::path& folder, double seconds, double rate) {
    TakeBundle bundle = TakeBundle::create(folder / "bench.takes");
    recordScreen(bundle.file(TakeBundle::screenFile), seconds, rate);
    EventLog log;
    log.captureRect = {.x = 0, .y = 0, .width = width, .height = height, .displayScaleFactor = 1};
    for (int n = 0; n < seconds * 60; ++n) {
        const double t = n / 60.0;
        log.cursorSamples.push_back(
            {.pts = t, .x = 0.5 + 0.3 * std::sin(t), .y = 0.5 + 0.3 * std::cos(1.3 * t)});
    }
    for (int second = 1; second < seconds; second += 4)
        log.events.push_back({.pts = static_cast<double>(second),
                              .type = InputEvent::EventType::leftClick,
                              .location = RelativePoint{0.3, 0.4},
                              .keyLabel = {}});
    bundle.write(log);
    EditParams edit;
    edit.zoomKeyframes = ZoomEngine{}.generate(log, logDuration(log));
    bundle.write(edit);
    return bundle;
}

void exportTake(const TakeBundle& bundle, const fs::path& destination) {
    const Exporter::Settings settings = exportSettings(OpenTake::open(bundle), {}, 0);
    Exporter exporter = Exporter::prepare(bundle, settings, [] { return std::make_unique<CpuRenderer>(); });
    exporter.exportVideo(destination, [](double) {}, {});
}

void plainTranscode(const fs::path& movie, CanvasSize canvas, const fs::path& destination) {
    const auto bitRate = movieBitRate(canvas, bitsPerPixel(QualityPreset::high));
    const std::string command = "ffmpeg -v error -nostdin -y -i '" + movie.string() + "' -r 60 -s " +
                                std::to_string(canvas.width) + "x" + std::to_string(canvas.height) + " " +
                                H264Settings::exported(canvas.width, canvas.height, bitRate).commandLine() +
                                " -movflags faststart '" + destination.string() + "'";
    // The only other threads are the exporter's, which have ended.
    if (std::system(command.c_str()) != 0)  // NOLINT(concurrency-mt-unsafe)
        throw std::runtime_error("ffmpeg failed");
}

CanvasSize sizeOf(const fs::path& movie) {
    const auto reader = MovieReader::open(movie);
    return {reader->naturalWidth(), reader->naturalHeight()};
}

void compare(const TakeBundle& bundle, const fs::path& folder) {
    const fs::path exported = folder / "export.mp4";
    const Cost ours = costOf([&] { exportTake(bundle, exported); });
    const auto compareWith = [&](const char* what, const fs::path& movie) {
        const CanvasSize canvas = sizeOf(exported);
        const Cost cost = costOf([&] { plainTranscode(movie, canvas, folder / "plain.mp4"); });
        std::printf(
            "%-28s wall %6.2f s, cpu %6.2f s; the export took %.2f of the wall and %.2f of the cpu time\n",
            what, cost.wallSeconds, cost.cpuSeconds, ours.wallSeconds / cost.wallSeconds,
            ours.cpuSeconds / cost.cpuSeconds);
    };
    std::printf("%-28s wall %6.2f s, cpu %6.2f s\n", "export", ours.wallSeconds, ours.cpuSeconds);
    compareWith("plain transcode of the take", bundle.file(TakeBundle::screenFile));
    compareWith("plain transcode of the export", exported);
    std::fflush(stdout);
}

void run(const QCommandLineParser& arguments) {
    const fs::path folder = fs::temp_directory_path() / "tessaloom-export-bench";
    fs::remove_all(folder);
    fs::create_directories(folder);
    const QStringList words = arguments.positionalArguments();
    const fs::path existing = words.value(0).toStdString();
    const TakeBundle bundle = fs::is_directory(existing) ? TakeBundle{existing}
                                                         : makeTake(folder, words.value(0, "10").toDouble(),
                                                                    words.value(1, "60").toDouble());
    for (int round = arguments.value("rounds").toInt(); round > 0; --round)
        compare(bundle, folder);
    fs::remove_all(folder);
}

}  // namespace
}  // namespace tessaloom

int main(int argumentCount, char** argumentValues) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, argumentValues);
    QCommandLineParser arguments;
    arguments.addHelpOption();
    arguments.addOption({"rounds", "How often each comparison is made.", "N", "1"});
    arguments.addPositionalArgument("BUNDLE | SECONDS RATE", "What to export.");
    arguments.process(application);
    tessaloom::run(arguments);
    return 0;
}
