// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/FrameCommand.h"

#include <QBuffer>
#include <QImage>
#include <iostream>

#include "core/AtomicFile.h"
#include "export/TakeExport.h"
#include "export/TakeMovies.h"
#include "render/SubpixelGrid.h"
#include "shell/Arguments.h"
#include "shell/BundleArgument.h"
#include "shell/OutputFile.h"
#include "shell/SizeArgument.h"

namespace tessaloom {
namespace {

/// Long enough to hold the picture in force at the time asked for, short enough to read little more.
constexpr double readAheadSeconds = 1.0 / 60.0;

struct FrameArguments {
    QString bundle;
    double time = 0;
    std::optional<CanvasSize> size;
    std::filesystem::path destination;
};

FrameArguments parse(const QStringList& words) {
    const Arguments arguments(words, {{"at", "SECONDS", {}}, {"size", "WxH", {}}, {"output", "FILE", "o"}},
                              {"RECORDING"});
    const auto time = arguments.number("at");
    const auto file = arguments.text("output");
    if (!time) throw UsageError("--at SECONDS is missing.");
    if (!file) throw UsageError("-o FILE.png is missing.");
    FrameArguments parsed{arguments.words().first(), *time, {}, file->toStdString()};
    if (parsed.destination.extension() != ".png") throw UsageError("-o takes a file name that ends in .png.");
    if (const auto size = arguments.text("size")) parsed.size = parseSize(*size);
    return parsed;
}

CanvasSize exportSize(const OpenTake& take, const TakeMovies& movies) {
    const double aspect = canvasAspect(take, {});
    return CanvasSize::fitting(movies.naturalWidth, movies.naturalHeight, aspect,
                               outputLongEdge(ResolutionPreset::p1080, aspect));
}

TakeMovies openMovies(const OpenTake& take, double time) {
    const bool cameraRuns = take.bundle.hasWebcam() && time >= take.log.webcamStartOffset;
    return TakeMovies::open(take.bundle, cameraRuns ? std::optional(take.edit.webcam) : std::nullopt,
                            TimeSegment{time, time + readAheadSeconds});
}

/// The picture in force at `time`; empty when there is none.
BgraImage pictureAt(HeldFrameReader& movie, double time) {
    BgraImage picture;
    if (const DecodedFrame* held = movie.frame(time)) held->toBgra(picture);
    return picture;
}

BgraImage drawFrame(const OpenTake& take, const FrameArguments& arguments, Renderer& renderer) {
    TakeMovies movies = openMovies(take, arguments.time);
    const BgraImage recording = pictureAt(movies.recording, arguments.time);
    if (recording.empty())
        throw CommandError("The recording shows nothing at that time; it starts at 0 seconds.");
    const double cameraTime = arguments.time - movies.cameraOffset;
    const BgraImage camera = movies.camera ? pictureAt(*movies.camera, cameraTime) : BgraImage();
    const BgraImage matte = movies.matte ? pictureAt(*movies.matte, cameraTime) : BgraImage();
    const CanvasSize canvas = arguments.size.value_or(exportSize(take, movies));
    const FrameComposer composer = take.composer(renderer.cursorImageSize(), renderer.cursorHotspot());
    BgraImage target(canvas.width, canvas.height);
    const auto frame = composer.composeFrame(arguments.time, canvas.width, canvas.height);
    renderer.render(
        onSubpixelGrid(frame, recording.width(), recording.height()),
        {.recording = {recording.view(), 1}, .camera = {camera.view(), 1}, .matte = {matte.view(), 1}},
        target);
    return target;
}

/// By way of memory, since Qt doesn't notice a file that the disk has no room for.
void savePng(const BgraImage& image, const std::filesystem::path& destination) {
    const QImage picture(image.row(0), image.width(), image.height(), image.stride(), QImage::Format_RGB32);
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    if (!picture.save(&png, "PNG")) throw CommandError("The picture is too large. Choose a smaller --size.");
    replaceFile(destination, png.data().toStdString());
}

}  // namespace

ExitStatus runFrameCommand(const QStringList& words, const Exporter::RendererFactory& makeRenderer) {
    const auto arguments = parse(words);
    const OpenTake take = openTake(findBundle(arguments.bundle));
    const auto destination = outputFile(arguments.destination);
    const auto renderer = makeRenderer();
    if (renderer->cursorStyle() != take.edit.cursorStyle) renderer->makeCursorTexture(take.edit.cursorStyle);
    renderer->loadWallpaper(take.wallpaper());
    savePng(drawFrame(take, arguments, *renderer), destination);
    std::cout << destination.string() << std::endl;
    return ExitStatus::done;
}

}  // namespace tessaloom
