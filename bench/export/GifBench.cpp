// SPDX-License-Identifier: GPL-3.0-or-later
// Makes a GIF of a recording and compares size, likeness and time with what FFmpeg's command line makes of
// the same drawn frames in its two passes, palettegen and paletteuse, with each of some ways to dither. Needs
// the ffmpeg program. Arguments: a recording's bundle, and frames a second (15).
#include <QCommandLineParser>
#include <QGuiApplication>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>

#include "Cost.h"
#include "WorkFolder.h"
#include "export/FramePipeline.h"
#include "export/GIFWriter.h"
#include "export/TakeExport.h"
#include "render/CpuRenderer.h"

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

/// The drawn frames in a file, row after row, four bytes a pixel.
class RawSink final : public FrameSink<BgraImage> {
  public:
    explicit RawSink(const fs::path& path) : file_(path, std::ios::binary) {}

    void append(std::int64_t, const BgraImage& picture, FrameChange) override {
        for (int y = 0; y < picture.height(); ++y)
            file_.write(reinterpret_cast<const char*>(picture.row(y)), std::streamsize{4} * picture.width());
    }

  private:
    std::ofstream file_;
};

struct Drawn {
    fs::path file;
    CanvasSize canvas;
    double rate = 15;
    std::int64_t frames = 0;

    std::size_t frameBytes() const {
        return static_cast<std::size_t>(canvas.width) * static_cast<std::size_t>(canvas.height) * 4;
    }
    std::string size() const { return std::to_string(canvas.width) + "x" + std::to_string(canvas.height); }
};

Drawn draw(const TakeBundle& bundle, double rate, const fs::path& file) {
    const Exporter::Settings settings = exportSettings(OpenTake::open(bundle), {}, 0);
    const OutputTimeline timeline(settings.segments, settings.speed, rate);
    TakeMovies movies = TakeMovies::open(bundle, settings.webcam, timeline.sourceRange());
    const auto canvas = CanvasSize::fitting(movies.naturalWidth, movies.naturalHeight, settings.aspect,
                                            settings.gifMaxDimension);
    CpuRenderer renderer;
    renderer.loadWallpaper(settings.wallpaper);
    renderer.makeCursorTexture(settings.cursorStyle);
    const auto composer = settings.makeComposer(renderer.cursorImageSize(), renderer.cursorHotspot());
    RawSink sink(file);
    FramePipeline<BgraImage> pipeline({.movies = movies,
                                       .timeline = timeline,
                                       .composer = composer,
                                       .renderer = renderer,
                                       .canvas = canvas,
                                       .sink = sink});
    const std::int64_t frames = pipeline.run([](double) {}, {});
    return {.file = file, .canvas = canvas, .rate = rate, .frames = frames};
}

std::string ffmpegReading(const Drawn& drawn) {
    return "ffmpeg -v error -nostdin -y -f rawvideo -pix_fmt bgr0 -s " + drawn.size() + " -r " +
           std::to_string(drawn.rate) + " -i '" + drawn.file.string() + "' ";
}

void writeOurs(const Drawn& drawn, const fs::path& gif) {
    GIFWriter writer(gif, drawn.rate, drawn.frames, true);
    std::ifstream file(drawn.file, std::ios::binary);
    std::vector<std::uint8_t> pixels(drawn.frameBytes());
    while (file.read(reinterpret_cast<char*>(pixels.data()), static_cast<std::streamsize>(pixels.size())))
        writer.add(
            {pixels.data(), drawn.canvas.width, drawn.canvas.height, std::ptrdiff_t{4} * drawn.canvas.width});
    writer.finish();
}

void writeTheirs(const Drawn& drawn, const char* statistics, const char* dither, const fs::path& gif) {
    const std::string palette = "'" + gif.string() + ".png'";
    costOfCommand(ffmpegReading(drawn) + "-vf palettegen=stats_mode=" + statistics + " " + palette);
    costOfCommand(ffmpegReading(drawn) + "-i " + palette + " -lavfi paletteuse=dither=" + dither + " '" +
                  gif.string() + "'");
}

/// Peak signal-to-noise ratio over all frames in dB.
double likeness(const Drawn& drawn, const fs::path& gif) {
    const fs::path decoded = gif.string() + ".raw";
    costOfCommand("ffmpeg -v error -nostdin -y -i '" + gif.string() +
                  "' -fps_mode passthrough -f rawvideo -pix_fmt bgr0 '" + decoded.string() + "'");
    if (fs::file_size(decoded) != fs::file_size(drawn.file)) throw std::runtime_error("frames are missing");
    std::ifstream original(drawn.file, std::ios::binary);
    std::ifstream shown(decoded, std::ios::binary);
    std::vector<char> a(drawn.frameBytes());
    std::vector<char> b(drawn.frameBytes());
    double squares = 0;
    for (std::int64_t n = 0; n < drawn.frames; ++n) {
        original.read(a.data(), static_cast<std::streamsize>(a.size()));
        shown.read(b.data(), static_cast<std::streamsize>(b.size()));
        for (std::size_t i = 0; i < a.size(); ++i) {
            const int difference = static_cast<std::uint8_t>(a[i]) - static_cast<std::uint8_t>(b[i]);
            if (i % 4 != 3) squares += difference * difference;
        }
    }
    const double samples =
        static_cast<double>(drawn.frames) * static_cast<double>(drawn.frameBytes()) * 3 / 4;
    fs::remove(decoded);
    return 10 * std::log10(255.0 * 255.0 * samples / squares);
}

void measure(const char* what, const Drawn& drawn, const fs::path& gif, const std::function<void()>& write) {
    const Cost cost = costOf(write);
    std::printf("%-34s %8ju bytes, %5.2f dB, wall %5.2f s, cpu %5.2f s\n", what,
                static_cast<std::uintmax_t>(fs::file_size(gif)), likeness(drawn, gif), cost.wallSeconds,
                cost.cpuSeconds);
    std::fflush(stdout);
}

void run(const QStringList& words) {
    const WorkFolder work("tessaloom-gif-bench");
    const fs::path& folder = work.path();
    const Drawn drawn =
        draw({words.value(0).toStdString()}, words.value(1, "15").toDouble(), folder / "frames");
    std::printf("%jd frames of %s\n", static_cast<std::intmax_t>(drawn.frames), drawn.size().c_str());
    measure("ours", drawn, folder / "ours.gif", [&] { writeOurs(drawn, folder / "ours.gif"); });
    const struct {
        const char* name;
        const char* statistics;
        const char* dither;
    } theirs[] = {{"ffmpeg, no dithering", "full", "none"},
                  {"ffmpeg, sierra2_4a (its default)", "full", "sierra2_4a"},
                  {"ffmpeg, bayer", "diff", "bayer:bayer_scale=3:diff_mode=rectangle"}};
    for (const auto& one : theirs) {
        const fs::path gif = folder / "theirs.gif";
        measure(one.name, drawn, gif, [&] { writeTheirs(drawn, one.statistics, one.dither, gif); });
    }
}

}  // namespace
}  // namespace tessaloom

int main(int argumentCount, char** argumentValues) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, argumentValues);
    QCommandLineParser arguments;
    arguments.addHelpOption();
    arguments.addPositionalArgument("BUNDLE [RATE]", "What to make a GIF of.");
    arguments.process(application);
    tessaloom::run(arguments.positionalArguments());
    return 0;
}
