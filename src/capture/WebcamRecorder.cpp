// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/WebcamRecorder.h"

#include <QPromise>
#include <array>
#include <mutex>
#include <system_error>

#include "base/BoundedWait.h"
#include "base/HostClock.h"
#include "base/Log.h"
#include "capture/LiveMovie.h"
#include "media/MediaError.h"
#include "media/PictureScaling.h"

namespace tessaloom {
namespace {

/// Two pictures must not fall on one tick of the movie's clock.
constexpr double shortestStep = 0.001;

}  // namespace

/// What the source's thread and a finish that overstays its limit go on using.
struct WebcamRecorder::Recording {
    explicit Recording(std::unique_ptr<CameraSource> camera) : source(std::move(camera)) { begun.start(); }

    void receive(const CameraPicture& picture);
    void record(const CameraPicture& picture);
    BgraView fitting(const BgraView& pixels);
    void begin(const CameraPicture& picture);
    void finish();
    void finishFile();

    std::mutex lock;  ///< guards what follows, up to the source
    std::optional<std::filesystem::path> file;
    std::optional<double> fileStartHostTime;
    std::shared_ptr<const CameraSource::Handler> preview;
    QPromise<void> begun;
    bool failed = false;
    double lastTime = 0;  ///< HostClock seconds of the file's last picture
    BgraImage scaled;     ///< of the file's size once it has begun
    std::unique_ptr<LiveMovie> movie;

    std::unique_ptr<CameraSource> source;
};

void WebcamRecorder::Recording::receive(const CameraPicture& picture) {
    {
        std::unique_lock guard(lock);
        const auto shown = preview;
        guard.unlock();
        if (shown) (*shown)(picture);
    }
    const std::lock_guard guard(lock);
    if (!file || failed) return;
    // A camera may repeat a time, or step back after it was held up: only that picture is left out.
    if (movie && picture.hostTime < lastTime + shortestStep) return;
    try {
        record(picture);
    } catch (const MediaError& error) {
        qCCritical(Log::webcam, "Webcam recording finished with error: %s", error.what());
        failed = true;
    }
}

void WebcamRecorder::Recording::record(const CameraPicture& picture) {
    if (!movie) begin(picture);
    const std::array<ScreenPatch, 1> whole{{{fitting(picture.pixels), 0, 0}}};
    movie->append(whole, picture.hostTime);
    lastTime = picture.hostTime;
}

/// In the file's size, also when another camera has taken over.
BgraView WebcamRecorder::Recording::fitting(const BgraView& pixels) {
    if (pixels.width == scaled.width() && pixels.height == scaled.height()) return pixels;
    scaleToFill(pixels, scaled);
    return scaled.view();
}

void WebcamRecorder::Recording::begin(const CameraPicture& picture) {
    scaled = BgraImage(picture.pixels.width, picture.pixels.height);
    movie = std::make_unique<LiveMovie>(
        *file,
        MovieWriter::Settings{.container = MovieWriter::Container::fragmentedMovie,
                              .video = H264Settings::capture(scaled.width(), scaled.height())},
        Log::webcam);
    fileStartHostTime = picture.hostTime;
    qCInfo(Log::webcam, "Webcam file started: startPTS→host %.4f, callback clock %.4f", picture.hostTime,
           HostClock::seconds());
    begun.finish();
}

void WebcamRecorder::Recording::finish() {
    finishFile();
    source->stop();
    qCInfo(Log::webcam, "Webcam session stopped");
}

/// Whatever the camera still delivers is no part of it.
void WebcamRecorder::Recording::finishFile() {
    const std::lock_guard guard(lock);
    file.reset();
    if (!movie || failed) return;
    try {
        movie->finish(HostClock::seconds());
        qCInfo(Log::webcam, "Webcam recording finished");
    } catch (const MediaError& error) {
        qCCritical(Log::webcam, "Webcam recording finished with error: %s", error.what());
    }
    movie.reset();
}

std::unique_ptr<WebcamRecorder> WebcamRecorder::start(std::unique_ptr<CameraSource> source) {
    qCInfo(Log::webcam, "Webcam device: %s", source->name().c_str());
    auto recording = std::make_shared<Recording>(std::move(source));
    Recording* const receiver = recording.get();  // the source is the recording's own
    recording->source->start([receiver](const CameraPicture& picture) { receiver->receive(picture); });
    qCInfo(Log::webcam, "Webcam session warmed");
    return std::unique_ptr<WebcamRecorder>(new WebcamRecorder(std::move(recording)));
}

WebcamRecorder::WebcamRecorder(std::shared_ptr<Recording> recording) : recording_(std::move(recording)) {}

WebcamRecorder::~WebcamRecorder() = default;

void WebcamRecorder::startRecording(const std::filesystem::path& file) {
    const std::lock_guard guard(recording_->lock);
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    recording_->file = file;
    qCInfo(Log::webcam, "Webcam recording started");
}

void WebcamRecorder::setPreview(CameraSource::Handler handler) {
    const std::lock_guard guard(recording_->lock);
    recording_->preview = std::make_shared<const CameraSource::Handler>(std::move(handler));
}

std::optional<double> WebcamRecorder::fileStartHostTime() const {
    const std::lock_guard guard(recording_->lock);
    return recording_->fileStartHostTime;
}

QCoro::Task<> WebcamRecorder::waitForFileStart(std::chrono::milliseconds limit, WaitClock& clock,
                                               std::stop_token cancel) {
    const bool begun = co_await waitBounded(recording_->begun.future(), limit, clock, cancel);
    if (!begun && !cancel.stop_requested()) {
        const std::chrono::duration<double> seconds = limit;
        qCCritical(Log::webcam, "Webcam did not begin writing within %.1fs", seconds.count());
    }
}

void WebcamRecorder::finish() {
    recording_->finish();
}

QCoro::Task<> WebcamRecorder::stop(WaitClock& clock) {
    // Named, because GCC 12 destroys a closure made inside an await expression twice.
    std::function<void()> finish = [recording = recording_] { recording->finish(); };
    const bool finished = co_await runBounded(std::move(finish), finishLimit, clock);
    if (!finished) qCCritical(Log::webcam, "The camera's file was not finished in time");
}

}  // namespace tessaloom
