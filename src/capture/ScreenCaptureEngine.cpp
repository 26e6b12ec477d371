// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ScreenCaptureEngine.h"

#include <QPromise>
#include <atomic>
#include <cmath>
#include <mutex>
#include <system_error>

#include "base/BoundedWait.h"
#include "base/HostClock.h"
#include "base/Log.h"
#include "capture/CaptureError.h"
#include "capture/LiveMovie.h"
#include "media/MediaError.h"

namespace tessaloom {
namespace {

constexpr std::chrono::seconds finishLimit{20};

/// Far below what can be seen, far above what dividing pixels by the scale and multiplying again loses.
constexpr double roundingSlackPixels = 1e-6;

/// The whole pixels, less an odd one.
int evenPixels(double points, double scale) {
    return static_cast<int>(points * scale + roundingSlackPixels) & ~1;
}

int nearestPixel(double points, double scale) {
    return static_cast<int>(std::lround(points * scale));
}

CaptureRect recordedRect(const CaptureTarget& target, const StreamConfiguration& stream) {
    const double scale = target.filter.pointPixelScale;
    const Rect content = target.filter.contentRect;
    return {content.x + stream.source.x / scale, content.y + stream.source.y / scale,
            stream.source.width / scale, stream.source.height / scale, scale};
}

MovieWriter::Settings movieSettings(const StreamConfiguration& stream, const LiveSoundSource* sound) {
    MovieWriter::Settings settings{.container = MovieWriter::Container::fragmentedMovie,
                                   .video = H264Settings::capture(stream.source.width, stream.source.height)};
    if (sound != nullptr) {
        settings.sound =
            AacSettings{.sampleRate = sound->format().sampleRate, .channels = sound->format().channels};
    }
    return settings;
}

}  // namespace

StreamConfiguration streamConfiguration(const CaptureTarget& target) {
    const Rect content = target.filter.contentRect;
    const Rect captured = target.region.value_or(content);
    const double scale = target.filter.pointPixelScale;
    StreamConfiguration configuration{.filter = target.filter, .source = {}};
    configuration.source = {nearestPixel(captured.x - content.x, scale),
                            nearestPixel(captured.y - content.y, scale), evenPixels(captured.width, scale),
                            evenPixels(captured.height, scale)};
    if (configuration.source.width < 2 || configuration.source.height < 2) {
        throw CaptureError::noDisplay("What was chosen has no extent on it.");
    }
    return configuration;
}

/// What the stream's thread and a finish that overstays its limit go on using.
struct ScreenCaptureEngine::Recording {
    Recording(const CaptureRect& rect, std::filesystem::path path, StoppedHandler handler)
        : captureRect(rect), file(std::move(path)), onStopped(std::move(handler)) {
        originKnown.start();
    }

    void receive(const ScreenFrame& frame);
    void receive(const SoundChunk& chunk);
    void endedByItself(const std::string& reason);
    void finish();

    const CaptureRect captureRect;
    const std::filesystem::path file;
    const StoppedHandler onStopped;

    std::mutex lock;
    QPromise<void> originKnown;
    bool started = false;
    double timelineOrigin = 0;

    std::atomic<int> lostBuffers = 0;  ///< of the system audio
    std::atomic<bool> ended = false;
    std::unique_ptr<LiveMovie> movie;
    // Last, so that their threads end before what they use.
    std::unique_ptr<LiveSoundSource> systemAudio;
    std::unique_ptr<ScreenStream> stream;
};

void ScreenCaptureEngine::Recording::receive(const ScreenFrame& frame) {
    if (ended || !frame.isComplete()) return;
    {
        const std::lock_guard guard(lock);
        if (!started) {
            started = true;
            timelineOrigin = frame.hostTime;
            originKnown.finish();
        }
    }
    try {
        movie->append(frame.patches, frame.hostTime);
    } catch (const MediaError& error) {
        endedByItself(error.what());
    }
}

void ScreenCaptureEngine::Recording::receive(const SoundChunk& chunk) {
    if (ended) return;
    lostBuffers += chunk.buffersLostBefore;
    try {
        movie->appendSound(chunk);
    } catch (const MediaError& error) {
        endedByItself(error.what());
    }
}

void ScreenCaptureEngine::Recording::endedByItself(const std::string& reason) {
    if (ended.exchange(true)) return;
    qCCritical(Log::screenCaptureTold, "Stream stopped with error: %s", reason.c_str());
    {
        const std::lock_guard guard(lock);
        originKnown.finish();
    }
    onStopped(reason);
}

void ScreenCaptureEngine::Recording::finish() {
    if (stream) stream->stop();
    if (systemAudio) systemAudio->stop();
    if (lostBuffers >= 1) {
        qCCritical(Log::screenCapture, "System audio dropped %d buffers; audio may drift",
                   lostBuffers.load());
    }
    try {
        if (started) movie->finish(HostClock::seconds());
    } catch (const MediaError& error) {
        qCCritical(Log::screenCapture, "stopCapture failed: %s", error.what());
    }
    movie.reset();
    std::error_code ignored;
    if (!started) std::filesystem::remove(file, ignored);
}

std::unique_ptr<ScreenCaptureEngine> ScreenCaptureEngine::start(CapturePlatform& platform,
                                                                const CaptureTarget& target,
                                                                std::unique_ptr<LiveSoundSource> systemAudio,
                                                                const std::filesystem::path& file,
                                                                StoppedHandler onStopped) {
    const StreamConfiguration configuration = streamConfiguration(target);
    auto recording =
        std::make_shared<Recording>(recordedRect(target, configuration), file, std::move(onStopped));
    recording->stream = platform.makeScreenStream(configuration);
    recording->movie = std::make_unique<LiveMovie>(file, movieSettings(configuration, systemAudio.get()),
                                                   Log::screenCapture);
    recording->systemAudio = std::move(systemAudio);
    Recording* const receiver = recording.get();  // both sources are the recording's own and end before it
    if (recording->systemAudio)
        recording->systemAudio->start([receiver](const SoundChunk& chunk) { receiver->receive(chunk); });
    try {
        recording->stream->start([receiver](const ScreenFrame& frame) { receiver->receive(frame); },
                                 [receiver](const std::string& reason) { receiver->endedByItself(reason); });
    } catch (...) {
        recording->finish();
        throw;
    }
    qCInfo(Log::screenCapture, "Screen capture started (%dx%d @ scale %f)", configuration.source.width,
           configuration.source.height, target.filter.pointPixelScale);
    return std::unique_ptr<ScreenCaptureEngine>(new ScreenCaptureEngine(std::move(recording)));
}

QCoro::Task<> ScreenCaptureEngine::waitForOrigin(std::chrono::milliseconds limit, WaitClock& clock,
                                                 std::stop_token cancel) {
    co_await waitBounded(recording_->originKnown.future(), limit, clock, cancel);
}

bool ScreenCaptureEngine::started() const {
    const std::lock_guard guard(recording_->lock);
    return recording_->started;
}

double ScreenCaptureEngine::timelineOrigin() const {
    const std::lock_guard guard(recording_->lock);
    return recording_->timelineOrigin;
}

const CaptureRect& ScreenCaptureEngine::captureRect() const {
    return recording_->captureRect;
}

QCoro::Task<> ScreenCaptureEngine::stop(WaitClock& clock) {
    // Named, because GCC 12 destroys a closure made inside an await expression twice.
    std::function<void()> finish = [recording = recording_] { recording->finish(); };
    const bool finished = co_await runBounded(std::move(finish), finishLimit, clock);
    if (!finished) qCCritical(Log::screenCapture, "The recording's file was not finished in time");
}

}  // namespace tessaloom
