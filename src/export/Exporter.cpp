// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/Exporter.h"

#include <algorithm>
#include <new>
#include <utility>

#include "base/AttemptMarker.h"
#include "base/Log.h"
#include "export/AudioMix.h"
#include "export/ExportStaging.h"
#include "export/FramePipeline.h"
#include "export/GIFWriter.h"
#include "export/MovieSink.h"
#include "export/OutputTimeline.h"
#include "export/QualityPreset.h"
#include "export/TakeMovies.h"
#include "media/MediaError.h"

namespace tessaloom {
namespace {

const char* messageOf(Exporter::Failure::Reason reason) {
    using enum Exporter::Failure::Reason;
    switch (reason) {
        case noVideoTrack:
            return "The recording has no video track.";
        case cantRead:
            return "Couldn't read the recording.";
        case cantWrite:
            return "Couldn't write the exported file.";
        case gifFailed:
            return "Couldn't write the GIF.";
    }
    return "";
}

void throwIfStopped(const std::stop_token& stop) {
    if (stop.stop_requested()) throw ExportCancelled();
}

}  // namespace

Exporter::Failure::Failure(Reason reason) : std::runtime_error(messageOf(reason)), reason_(reason) {}

Exporter Exporter::prepare(const TakeBundle& bundle, const Settings& settings,
                           const RendererFactory& makeRenderer, std::vector<HardwareEncoding> hardware) {
    std::unique_ptr<Renderer> renderer = makeRenderer();
    renderer->loadWallpaper(settings.wallpaper);
    if (settings.cursorStyle != renderer->cursorStyle()) renderer->makeCursorTexture(settings.cursorStyle);
    FrameComposer composer = settings.makeComposer(renderer->cursorImageSize(), renderer->cursorHotspot());
    if (composer.keystrokesVisible) renderer->prewarmKeystrokes(composer.keystrokes.uniqueTexts());
    if (composer.captionsVisible) {
        renderer->prewarmCaptions(composer.captions.uniqueTexts(), composer.captionStyle);
    }
    return Exporter(bundle, settings, std::move(renderer), std::move(composer), std::move(hardware));
}

Exporter::Exporter(const TakeBundle& bundle, const Settings& settings, std::unique_ptr<Renderer> renderer,
                   FrameComposer composer, std::vector<HardwareEncoding> hardware)
    : bundle_(bundle),
      settings_(settings),
      renderer_(std::move(renderer)),
      composer_(std::move(composer)),
      hardware_(std::move(hardware)) {}

Exporter::Run Exporter::begin(double framesPerSecond, std::optional<int> longEdgeLimit) const {
    OutputTimeline timeline(settings_.segments, settings_.speed, framesPerSecond);
    TakeMovies movies = TakeMovies::open(bundle_, settings_.webcam, timeline.sourceRange());
    const CanvasSize canvas =
        CanvasSize::fitting(movies.naturalWidth, movies.naturalHeight, settings_.aspect, longEdgeLimit);
    return {.timeline = std::move(timeline), .movies = std::move(movies), .canvas = canvas};
}

template <typename Picture>
std::int64_t Exporter::drawInto(FrameSink<Picture>& sink, Run& run, const Progress& progress,
                                const std::stop_token& stop) {
    try {
        FramePipeline<Picture> pipeline({.movies = run.movies,
                                         .timeline = run.timeline,
                                         .composer = composer_,
                                         .renderer = *renderer_,
                                         .canvas = run.canvas,
                                         .sink = sink});
        return pipeline.run(progress, stop);
    } catch (const std::bad_alloc&) {
        throw Failure(Failure::Reason::cantWrite);
    }
}

void Exporter::exportVideo(const std::filesystem::path& destination, const Progress& progress,
                           const std::stop_token& stop) {
    const auto isExportedBy = [&](const HardwareEncoding& hardware) {
        return exportInHardware(hardware, destination, progress, stop);
    };
    if (!std::ranges::any_of(hardware_, isExportedBy))
        writeMovie(destination, &H264Settings::exported, progress, stop);
}

bool Exporter::exportInHardware(const HardwareEncoding& hardware, const std::filesystem::path& destination,
                                const Progress& progress, const std::stop_token& stop) {
    const auto attempt = AttemptMarker::place(hardware.marker);
    if (!attempt) {
        qCInfo(Log::exporting, "The hardware's encoder is left alone: an export with it has not ended (%s)",
               hardware.marker.c_str());
        return false;
    }
    try {
        writeMovie(destination, hardware.exported, progress, stop);
        return true;
    } catch (const EncodingError& error) {
        qCInfo(Log::exporting, "The hardware's encoder gave up (%s): %s", hardware.marker.stem().c_str(),
               error.what());
        return false;
    }
}

void Exporter::writeMovie(const std::filesystem::path& destination, const Encoding& encoding,
                          const Progress& progress, const std::stop_token& stop) {
    throwIfStopped(stop);
    Run run = begin(MovieSink::framesPerSecond, settings_.outputLongEdge);
    auto mix = makeAudioMix(bundle_, settings_);
    ExportStaging staging(destination);
    const auto bitRate = movieBitRate(run.canvas, settings_.bitsPerPixel);
    const MovieWriter::Settings settings{
        .container = MovieWriter::Container::mp4,
        .video = encoding(run.canvas.width, run.canvas.height, bitRate),
        .sound = mix ? std::optional(AacSettings{.sampleRate = soundRate}) : std::nullopt};
    MovieSink sink(MovieWriter::create(staging.url(), settings), std::move(mix), stop);
    if (drawInto(sink, run, progress, stop) == 0) throw Failure(Failure::Reason::cantRead);
    sink.finish();
    throwIfStopped(stop);
    staging.commit();
    progress(1.0);
}

void Exporter::exportGIF(const std::filesystem::path& destination, const Progress& progress,
                         const std::stop_token& stop) {
    throwIfStopped(stop);
    Run run = begin(settings_.gifFPS, settings_.gifMaxDimension);
    GIFWriter writer(destination, settings_.gifFPS, run.timeline.frameCount(), settings_.gifLoop);
    drawInto(writer, run, progress, stop);
    throwIfStopped(stop);
    writer.finish();
    progress(1.0);
}

}  // namespace tessaloom
