// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/FrameCommand.h"

#include <QBuffer>
#include <QImage>
#include <iostream>

#include "core/AtomicFile.h"
#include "export/HeldFrameReader.h"
#include "export/TakeExport.h"
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

CanvasSize exportSize(const OpenTake& take, const MovieReader& movie) {
    const double aspect = canvasAspect(take, {});
    return CanvasSize::fitting(movie.naturalWidth(), movie.naturalHeight(), aspect,
                               outputLongEdge(ResolutionPreset::p1080, aspect));
}

BgraImage drawFrame(const OpenTake& take, const FrameArguments& arguments, Renderer& renderer) {
    auto movie = MovieReader::open(take.bundle.file(TakeBundle::screenFile),
                                   MovieReader::TimeRange{arguments.time, arguments.time + readAheadSeconds});
    const CanvasSize canvas = arguments.size.value_or(exportSize(take, *movie));
    HeldFrameReader frames(std::move(movie));
    const DecodedFrame* held = frames.frame(arguments.time);
    if (held == nullptr)
        throw CommandError("The recording shows nothing at that time; it starts at 0 seconds.");
    BgraImage recording;
    held->toBgra(recording);
    const FrameComposer composer = take.composer(renderer.cursorImageSize(), renderer.cursorHotspot());
    BgraImage target(canvas.width, canvas.height);
    const auto frame = composer.composeFrame(arguments.time, canvas.width, canvas.height);
    renderer.render(onSubpixelGrid(frame, recording.width(), recording.height()),
                    {.recording = {recording.view(), 1}}, target);
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
