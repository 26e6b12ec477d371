// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/MicRecorder.h"

#include <mutex>
#include <system_error>

#include "base/BoundedWait.h"
#include "base/HostClock.h"
#include "base/Log.h"
#include "base/PeriodicTask.h"
#include "capture/SteadySound.h"
#include "media/MediaError.h"
#include "media/MovieWriter.h"

namespace tessaloom {
namespace {

constexpr std::chrono::seconds finishLimit{10};
/// Half of what may be lost, so that a late flush still keeps the promise.
constexpr std::chrono::milliseconds flushInterval{500};
/// A device that was silent for so long has nothing more to say about that time.
constexpr double longestDelay = 2.0;
constexpr int sampleRate = 44'100;

MovieWriter::Settings soundSettings(int channels) {
    return {.container = MovieWriter::Container::fragmentedSound,
            .sound = AacSettings{.sampleRate = sampleRate, .channels = channels}};
}

}  // namespace

/// What the source's thread and a finish that overstays its limit go on using.
struct MicRecorder::Recording {
    Recording(std::unique_ptr<LiveSoundSource> microphone, std::filesystem::path path)
        : file(std::move(path)),
          writer(MovieWriter::create(file, soundSettings(microphone->format().channels))),
          source(std::move(microphone)) {}

    void receive(const SoundChunk& chunk);
    void begin(double hostTime);
    bool flush();
    void finish();
    void complete();
    template <typename Step>
    bool write(Step step);

    const std::filesystem::path file;

    std::mutex lock;  ///< guards what follows, up to the source
    bool armed = false;
    double origin = 0;
    std::optional<double> firstSamplePTS;
    int dropped = 0;
    bool failed = false;
    std::unique_ptr<MovieWriter> writer;
    std::optional<SteadySound> sound;

    std::unique_ptr<LiveSoundSource> source;
    std::optional<PeriodicTask> flusher;
};

void MicRecorder::Recording::receive(const SoundChunk& chunk) {
    const std::lock_guard guard(lock);
    // Samples of the warm-up and the countdown are not part of the recording.
    if (!armed || failed || chunk.hostTime < origin) return;
    write([&] {
        if (!firstSamplePTS) begin(chunk.hostTime);
        dropped += chunk.buffersLostBefore;
        sound->append(chunk);
    });
}

void MicRecorder::Recording::begin(double hostTime) {
    sound.emplace(source->format(), sampleRate, hostTime,
                  [this](std::span<const float> samples) { writer->appendSound(samples); });
    firstSamplePTS = hostTime;
}

/// Does one step of writing; the first that fails ends the file, and the recording goes on without.
template <typename Step>
bool MicRecorder::Recording::write(Step step) {
    try {
        step();
    } catch (const MediaError& error) {
        qCCritical(Log::mic, "Failed to write the microphone's sound: %s", error.what());
        failed = true;
    }
    return !failed;
}

bool MicRecorder::Recording::flush() {
    const std::lock_guard guard(lock);
    if (!firstSamplePTS || failed) return !failed;
    return write([this] {
        sound->padTo(HostClock::seconds() - longestDelay);
        writer->flush();
    });
}

void MicRecorder::Recording::finish() {
    flusher->stop();
    {
        const std::lock_guard guard(lock);
        armed = false;
    }
    source->stop();
    const std::lock_guard guard(lock);
    if (dropped >= 1) qCCritical(Log::mic, "Mic dropped %d buffers; audio may drift", dropped);
    if (firstSamplePTS && !failed) write([this] { complete(); });
    writer.reset();
    std::error_code ignored;
    if (!firstSamplePTS) std::filesystem::remove(file, ignored);
}

void MicRecorder::Recording::complete() {
    sound->padTo(HostClock::seconds());
    writer->finish();
}

std::unique_ptr<MicRecorder> MicRecorder::start(std::unique_ptr<LiveSoundSource> source,
                                                const std::filesystem::path& file) {
    qCInfo(Log::mic, "Mic device: %s", source->name().c_str());
    auto recording = std::make_shared<Recording>(std::move(source), file);
    Recording* const receiver = recording.get();  // source and flusher are the recording's own
    recording->flusher.emplace(flushInterval, [receiver] { return receiver->flush(); });
    recording->source->start([receiver](const SoundChunk& chunk) { receiver->receive(chunk); });
    qCInfo(Log::mic, "Microphone capture warmed");
    return std::unique_ptr<MicRecorder>(new MicRecorder(std::move(recording)));
}

MicRecorder::MicRecorder(std::shared_ptr<Recording> recording) : recording_(std::move(recording)) {}

MicRecorder::~MicRecorder() = default;

void MicRecorder::arm(double origin) {
    const std::lock_guard guard(recording_->lock);
    recording_->origin = origin;
    recording_->armed = true;
}

std::optional<double> MicRecorder::firstSamplePTS() const {
    const std::lock_guard guard(recording_->lock);
    return recording_->firstSamplePTS;
}

QCoro::Task<> MicRecorder::stop(WaitClock& clock) {
    // Named, because GCC 12 destroys a closure made inside an await expression twice.
    std::function<void()> finish = [recording = recording_] { recording->finish(); };
    const bool finished = co_await runBounded(std::move(finish), finishLimit, clock);
    if (!finished) qCCritical(Log::mic, "The microphone's file was not finished in time");
}

}  // namespace tessaloom
