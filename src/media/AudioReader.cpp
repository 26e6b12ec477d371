// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/AudioReader.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "media/LibavTrack.h"
#include "media/SoundConverter.h"

namespace tessaloom {
namespace {

/// A decoder that starts in the middle needs a little run-up before its samples are right.
constexpr std::int64_t runUp = soundRate / 4;
/// Gaps shorter than this are read through: seeking costs more.
constexpr std::int64_t longestReadOn = 2 * soundRate;
/// Stored times may be this far off, as where a container counts milliseconds; more is a hole in the track.
constexpr double timeSlack = 0.003;

/// Far above full scale; only damage is louder.
constexpr float loudest = 16;

float heard(float value) {
    return std::isfinite(value) ? std::clamp(value, -loudest, loudest) : 0.0F;
}

/// What an encoder added behind the end to fill its last frame isn't played; the frame's stored duration
/// tells where times are counted in samples.
void dropPadding(AVFrame& frame, AVRational timeBase) {
    const bool countsSamples = av_cmp_q(timeBase, {1, frame.sample_rate}) == 0;
    if (countsSamples && frame.pkt_duration > 0 && frame.pkt_duration < frame.nb_samples)
        frame.nb_samples = static_cast<int>(frame.pkt_duration);
}

}  // namespace

struct AudioReader::Source {
    LibavTrack track;
    SoundConverter converter{};
    LibavHandle<AVFrame> frame{av_frame_alloc()};
    /// Seconds at which the next frame follows on; nothing after a seek.
    std::optional<double> nextTime{};

    double timeOf(const AVFrame& decoded) const {
        const std::int64_t ticks =
            decoded.pts != AV_NOPTS_VALUE ? decoded.pts : decoded.best_effort_timestamp;
        if (ticks == AV_NOPTS_VALUE) return nextTime.value_or(0);
        return static_cast<double>(ticks) * track.tick();
    }
};

std::unique_ptr<AudioReader> AudioReader::open(const std::filesystem::path& path) {
    auto source = std::make_unique<Source>(Source{LibavTrack::open(path, AVMEDIA_TYPE_AUDIO)});
    return std::unique_ptr<AudioReader>(new AudioReader(path, std::move(source)));
}

AudioReader::AudioReader(std::filesystem::path path, std::unique_ptr<Source> source)
    : path_(std::move(path)), source_(std::move(source)) {}

AudioReader::~AudioReader() = default;

std::size_t AudioReader::read(std::int64_t position, std::span<StereoSample> target) {
    if (!reachesByReadingOn(position)) seek(position);
    std::size_t filled = 0;
    while (filled < target.size()) {
        const std::int64_t at = position + static_cast<std::int64_t>(filled);
        if (at >= chunkEnd()) {
            if (!decodeMore()) break;
            continue;
        }
        const std::int64_t limit = at < chunkStart_ ? chunkStart_ : chunkEnd();
        const auto count = std::min(static_cast<std::size_t>(limit - at), target.size() - filled);
        const auto part = target.subspan(filled, count);
        if (at < chunkStart_) {
            std::ranges::fill(part, StereoSample{});
        } else {
            std::copy_n(chunk_.begin() + (at - chunkStart_), count, part.begin());
        }
        filled += count;
    }
    std::ranges::fill(target.subspan(filled), StereoSample{});
    readUpTo_ = position + static_cast<std::int64_t>(target.size());
    return filled;
}

bool AudioReader::reachesByReadingOn(std::int64_t position) const {
    const bool behind = position < chunkStart_ && position < readUpTo_ && readUpTo_ > 0;
    return !behind && (ended_ || position <= chunkEnd() + longestReadOn);
}

void AudioReader::seek(std::int64_t position) {
    if (startAt(position - runUp) && (decodeMore(), chunkStart_ <= position)) return;
    // The file can't seek, or not exactly enough: once more from its beginning.
    source_ = std::make_unique<Source>(Source{LibavTrack::open(path_, AVMEDIA_TYPE_AUDIO)});
    forgetChunk();
}

void AudioReader::forgetChunk() {
    chunk_.clear();
    chunkStart_ = readUpTo_ = 0;
    ended_ = false;
}

/// Goes to the frame at or before `position`, or to the first one. False when the file can't.
bool AudioReader::startAt(std::int64_t position) {
    forgetChunk();
    source_->nextTime.reset();
    LibavTrack& track = source_->track;
    avcodec_flush_buffers(track.decoder.get());
    const AVRational samples{1, soundRate};
    const std::int64_t ticks = av_rescale_q_rnd(position, samples, track.stream.time_base, AV_ROUND_DOWN);
    return av_seek_frame(track.input.get(), track.stream.index, ticks, AVSEEK_FLAG_BACKWARD) >= 0;
}

/// Makes the next stretch of sound the chunk. False at the end of the track.
bool AudioReader::decodeMore() {
    while (!ended_) {
        const int result = avcodec_receive_frame(source_->track.decoder.get(), source_->frame.get());
        if (result == AVERROR(EAGAIN)) {
            ended_ = !source_->track.feedDecoder();
        } else if (result == AVERROR_EOF) {
            ended_ = true;
            chunkStart_ = chunkEnd();
            source_->converter.finish(chunk_);
            return !chunk_.empty();
        } else if (result >= 0 && !isDamaged(*source_->frame)) {
            takeFrame();
            return true;
        }
    }
    return false;
}

void AudioReader::takeFrame() {
    Source& source = *source_;
    AVFrame& frame = *source.frame;
    dropPadding(frame, source.track.stream.time_base);
    const double time = source.timeOf(frame);
    if (source.nextTime && std::abs(time - *source.nextTime) <= timeSlack) {
        chunkStart_ = chunkEnd();
    } else {
        source.converter.restart();
        source.nextTime = time;
        chunkStart_ = soundPosition(time);
    }
    *source.nextTime += static_cast<double>(frame.nb_samples) / frame.sample_rate;
    source.converter.convert(frame, chunk_);
    for (StereoSample& sample : chunk_)
        sample = {heard(sample.left), heard(sample.right)};
}

std::int64_t AudioReader::chunkEnd() const {
    return chunkStart_ + static_cast<std::int64_t>(chunk_.size());
}

}  // namespace tessaloom
