// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/TakeMovies.h"

#include <exception>

#include "export/Exporter.h"
#include "media/MediaError.h"

namespace tessaloom {
namespace {

constexpr double leastBlur = 0.001;

std::unique_ptr<MovieReader> openMovie(const TakeBundle& bundle, std::string_view file,
                                       const std::optional<TimeSegment>& range) {
    std::optional<MovieReader::TimeRange> seconds;
    if (range) seconds = {range->start, range->end};
    return MovieReader::open(bundle.file(file), seconds);
}

std::unique_ptr<MovieReader> openRecording(const TakeBundle& bundle,
                                           const std::optional<TimeSegment>& range) {
    try {
        return openMovie(bundle, TakeBundle::screenFile, range);
    } catch (const NoVideoTrack&) {
        throw Exporter::Failure(Exporter::Failure::Reason::noVideoTrack);
    }
}

double storedCameraOffset(const TakeBundle& bundle) {
    try {
        return bundle.readLog().webcamStartOffset;
    } catch (const std::exception&) {
        return 0;
    }
}

/// An end that the camera hadn't reached yet stays where it is.
std::optional<TimeSegment> cameraRange(const std::optional<TimeSegment>& range, double offset) {
    if (!range) return std::nullopt;
    const auto moved = [offset](double time) { return time - offset >= 0 ? time - offset : time; };
    const TimeSegment result{moved(range->start), moved(range->end)};
    if (result.start > result.end) throw Exporter::Failure(Exporter::Failure::Reason::cantRead);
    return result;
}

}  // namespace

TakeMovies TakeMovies::open(const TakeBundle& bundle, const std::optional<WebcamConfig>& webcam,
                            const std::optional<TimeSegment>& range) {
    auto recording = openRecording(bundle, range);
    const int width = recording->naturalWidth();
    const int height = recording->naturalHeight();
    TakeMovies movies{.naturalWidth = width,
                      .naturalHeight = height,
                      .recording = HeldFrameReader(std::move(recording)),
                      .camera = {},
                      .matte = {},
                      .cameraOffset = storedCameraOffset(bundle)};
    if (webcam && webcam->enabled && bundle.hasWebcam()) {
        const auto moved = cameraRange(range, movies.cameraOffset);
        movies.camera.emplace(openMovie(bundle, TakeBundle::webcamFile, moved));
        if (webcam->blur > leastBlur && bundle.hasMatte())
            movies.matte.emplace(openMovie(bundle, TakeBundle::matteFile, moved));
    }
    return movies;
}

}  // namespace tessaloom
