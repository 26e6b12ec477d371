// SPDX-License-Identifier: GPL-3.0-or-later
// Exports a recording and compares time and memory with what FFmpeg's command line needs to decode and encode
// it at the same size with the same encoder settings and 60 frames a second, and the voice with it. Pair by
// pair, so that both meet the same load. Needs the ffmpeg program. Arguments: a recording's bundle, or else
// the seconds (10) and frames a second (60) of a made one (1920x1080, a scrolling document, a pointer, zooms;
// with
// --still mostly at rest, with --sound a voice and music, with --4k larger), and --rounds N (1).
#include <QCommandLineParser>
#include <QGuiApplication>
#include <cstdio>
#include <filesystem>
#include <string>

#include "BenchTake.h"
#include "Cost.h"
#include "WorkFolder.h"
#include "export/TakeExport.h"
#include "media/MovieReader.h"
#include "render/CpuRenderer.h"

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

void exportTake(const TakeBundle& bundle, const fs::path& destination) {
    // The recording's own size, whatever it is.
    constexpr ExportChoices choices{.resolution = ResolutionPreset::p2160};
    const Exporter::Settings settings = exportSettings(OpenTake::open(bundle), choices, 0);
    Exporter exporter = Exporter::prepare(bundle, settings, [] { return std::make_unique<CpuRenderer>(); });
    exporter.exportVideo(destination, [](double) {}, {});
}

/// `voice` is a sound file, or empty.
Cost plainTranscode(const fs::path& movie, const fs::path& voice, CanvasSize canvas,
                    const fs::path& destination) {
    const auto bitRate = movieBitRate(canvas, bitsPerPixel(QualityPreset::high));
    return costOfCommand("ffmpeg -v error -nostdin -y -i '" + movie.string() + "'" +
                         (voice.empty() ? "" : " -i '" + voice.string() + "' -ac 2 -ar 44100 -b:a 128k") +
                         " -r 60 -s " + std::to_string(canvas.width) + "x" + std::to_string(canvas.height) +
                         " " + H264Settings::exported(canvas.width, canvas.height, bitRate).commandLine() +
                         " -movflags faststart '" + destination.string() + "'");
}

CanvasSize sizeOf(const fs::path& movie) {
    const auto reader = MovieReader::open(movie);
    return {reader->naturalWidth(), reader->naturalHeight()};
}

void compare(const TakeBundle& bundle, const fs::path& folder) {
    const fs::path exported = folder / "export.mp4";
    const Cost ours = costOf([&] { exportTake(bundle, exported); });
    const CanvasSize canvas = sizeOf(exported);
    const auto compareWith = [&](const char* what, const fs::path& movie, const fs::path& voice) {
        const Cost cost = plainTranscode(movie, voice, canvas, folder / "plain.mp4");
        std::printf(
            "%-28s wall %6.2f s, cpu %6.2f s, peak %6.0f MB; the export took %.2f of the wall and %.2f "
            "of the cpu time and %+.0f MB\n",
            what, cost.wallSeconds, cost.cpuSeconds, cost.peakMegabytes, ours.wallSeconds / cost.wallSeconds,
            ours.cpuSeconds / cost.cpuSeconds, ours.peakMegabytes - cost.peakMegabytes);
    };
    std::printf("%-28s wall %6.2f s, cpu %6.2f s, peak %6.0f MB\n", "export", ours.wallSeconds,
                ours.cpuSeconds, ours.peakMegabytes);
    compareWith("plain transcode of the take", bundle.file(TakeBundle::screenFile),
                bundle.hasMic() ? bundle.file(TakeBundle::microphoneFile) : fs::path());
    compareWith("plain transcode of the export", exported, {});
    std::fflush(stdout);
}

BenchTake wantedTake(const QCommandLineParser& arguments) {
    const QStringList words = arguments.positionalArguments();
    BenchTake wanted{.seconds = words.value(0, "10").toDouble(),
                     .rate = words.value(1, "60").toDouble(),
                     .still = arguments.isSet("still"),
                     .sound = arguments.isSet("sound")};
    if (arguments.isSet("4k")) {
        wanted.width = 3840;
        wanted.height = 2160;
    }
    return wanted;
}

void run(const QCommandLineParser& arguments) {
    const WorkFolder work("tessaloom-export-bench");
    const fs::path& folder = work.path();
    const fs::path existing = arguments.positionalArguments().value(0).toStdString();
    const TakeBundle bundle =
        fs::is_directory(existing) ? TakeBundle{existing} : makeBenchTake(wantedTake(arguments), folder);
    for (int round = arguments.value("rounds").toInt(); round > 0; --round)
        compare(bundle, folder);
}

}  // namespace
}  // namespace tessaloom

int main(int argumentCount, char** argumentValues) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, argumentValues);
    QCommandLineParser arguments;
    arguments.addHelpOption();
    arguments.addOption({"rounds", "How often each comparison is made.", "N", "1"});
    arguments.addOption({"still", "Make a recording that is mostly at rest."});
    arguments.addOption({"sound", "Make a recording with a voice, and music under it."});
    arguments.addOption({"4k", "Make a recording of 3840x2160."});
    arguments.addPositionalArgument("BUNDLE | SECONDS RATE", "What to export.");
    arguments.process(application);
    tessaloom::run(arguments);
    return 0;
}
