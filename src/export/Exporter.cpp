// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/Exporter.h"

#include <utility>

#include "export/ExportStaging.h"
#include "export/FramePipeline.h"
#include "export/HeldFrameReader.h"
#include "export/OutputTimeline.h"
#include "export/QualityPreset.h"
#include "media/MediaError.h"
#include "media/MovieReader.h"
#include "media/MovieWriter.h"

namespace tessaloom {
namespace {

constexpr double movieFramesPerSecond = 60;

const char* messageOf(Exporter::Failure::Reason reason) {
    using enum Exporter::Failure::Reason;
    switch (reason) {
        case noVideoTrack:
            return "The recording has no video track.";
        case cantRead:
            return "Couldn't read the recording.";
    }
    return "";
}

std::unique_ptr<MovieReader> openRecording(const TakeBundle& bundle, const OutputTimeline& timeline) {
    std::optional<MovieReader::TimeRange> range;
    if (const auto kept = timeline.sourceRange()) range = {kept->start, kept->end};
    try {
        return MovieReader::open(bundle.file(TakeBundle::screenFile), range);
    } catch (const NoVideoTrack&) {
        throw Exporter::Failure(Exporter::Failure::Reason::noVideoTrack);
    }
}

MovieWriter::Settings writerSettings(CanvasSize canvas, double bitsPerPixel) {
    return {.container = MovieWriter::Container::mp4,
            .video = H264Settings::exported(canvas.width, canvas.height, movieBitRate(canvas, bitsPerPixel))};
}

void throwIfStopped(const std::stop_token& stop) {
    if (stop.stop_requested()) throw ExportCancelled();
}

}  // namespace

Exporter::Failure::Failure(Reason reason) : std::runtime_error(messageOf(reason)), reason_(reason) {}

Exporter Exporter::prepare(const TakeBundle& bundle, const Settings& settings,
                           const RendererFactory& makeRenderer) {
    std::unique_ptr<Renderer> renderer = makeRenderer();
    renderer->loadWallpaper(settings.wallpaper);
    if (settings.cursorStyle != renderer->cursorStyle()) renderer->makeCursorTexture(settings.cursorStyle);
    FrameComposer composer = settings.makeComposer(renderer->cursorImageSize(), renderer->cursorHotspot());
    if (composer.keystrokesVisible) renderer->prewarmKeystrokes(composer.keystrokes.uniqueTexts());
    if (composer.captionsVisible) {
        renderer->prewarmCaptions(composer.captions.uniqueTexts(), composer.captionStyle);
    }
    return Exporter(bundle, settings, std::move(renderer), std::move(composer));
}

Exporter::Exporter(const TakeBundle& bundle, const Settings& settings, std::unique_ptr<Renderer> renderer,
                   FrameComposer composer)
    : bundle_(bundle), settings_(settings), renderer_(std::move(renderer)), composer_(std::move(composer)) {}

void Exporter::exportVideo(const std::filesystem::path& destination, const Progress& progress,
                           const std::stop_token& stop) {
    throwIfStopped(stop);
    const OutputTimeline timeline(settings_.segments, settings_.speed, movieFramesPerSecond);
    auto reader = openRecording(bundle_, timeline);
    const CanvasSize canvas = CanvasSize::fitting(reader->naturalWidth(), reader->naturalHeight(),
                                                  settings_.aspect, settings_.outputLongEdge);
    HeldFrameReader recording(std::move(reader));

    ExportStaging staging(destination);
    const auto writer = MovieWriter::create(staging.url(), writerSettings(canvas, settings_.bitsPerPixel));
    FramePipeline pipeline({.recording = recording,
                            .timeline = timeline,
                            .composer = composer_,
                            .renderer = *renderer_,
                            .canvas = canvas,
                            .writer = *writer});
    if (pipeline.run(progress, stop) == 0) throw Failure(Failure::Reason::cantRead);
    writer->finish();
    throwIfStopped(stop);
    staging.commit();
    progress(1.0);
}

}  // namespace tessaloom
