// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/MovieReader.h"

extern "C" {
#include <libavutil/display.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

#include "media/LibavTrack.h"

namespace tessaloom {
namespace {

/// How a player turns the track's pictures, as cameras that were held upright say it.
Rotation rotationOf(const AVStream& stream) {
    const std::uint8_t* data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    if (data == nullptr) return Rotation::none;
    std::array<std::int32_t, 9> matrix{};
    std::memcpy(matrix.data(), data, sizeof matrix);
    const double counterclockwise = av_display_rotation_get(matrix.data());
    if (!std::isfinite(counterclockwise)) return Rotation::none;
    const auto quarters = std::lround(-counterclockwise / 90) & 3;
    return static_cast<Rotation>(quarters);
}

}  // namespace

struct MovieReader::Source {
    LibavTrack track;
    Rotation rotation = rotationOf(track.stream);
    double end = std::numeric_limits<double>::infinity();
};

/// Goes to the key frame that is shown at or before `time`. False for a file that can't seek, which stays
/// where it is.
bool MovieReader::seekKeyFrame(Source& source, double time) {
    AVFormatContext* input = source.track.input.get();
    AVPacket* packet = source.track.packet.get();
    const int index = source.track.stream.index;
    const auto start = static_cast<std::int64_t>(std::floor(time / source.track.tick()));
    if (av_seek_frame(input, index, start, AVSEEK_FLAG_BACKWARD) < 0) return false;
    // Seeking goes by the times of decoding. Where pictures are stored out of order they are shown later.
    std::int64_t delay = 0;
    if (av_read_frame(input, packet) >= 0) {
        delay = std::max<std::int64_t>(packet->pts - packet->dts, 0);
        av_packet_unref(packet);
    }
    av_seek_frame(input, index, start - delay, AVSEEK_FLAG_BACKWARD);
    return true;
}

std::unique_ptr<MovieReader> MovieReader::open(const std::filesystem::path& path,
                                               std::optional<TimeRange> range) {
    auto source = std::make_unique<Source>(Source{LibavTrack::open(path, AVMEDIA_TYPE_VIDEO)});
    if (range) {
        source->end = range->end;
        seekKeyFrame(*source, range->start);
    }
    return std::unique_ptr<MovieReader>(new MovieReader(std::move(source)));
}

MovieReader::MovieReader(std::unique_ptr<Source> source) : source_(std::move(source)) {}

MovieReader::~MovieReader() = default;

int MovieReader::naturalWidth() const {
    const AVCodecParameters& track = *source_->track.stream.codecpar;
    return swapsSides(source_->rotation) ? track.height : track.width;
}

int MovieReader::naturalHeight() const {
    const AVCodecParameters& track = *source_->track.stream.codecpar;
    return swapsSides(source_->rotation) ? track.width : track.height;
}

std::optional<DecodedFrame> MovieReader::next() {
    while (!ended_) {
        LibavHandle<AVFrame> frame(av_frame_alloc());
        const int result = avcodec_receive_frame(source_->track.decoder.get(), frame.get());
        if (result == AVERROR(EAGAIN)) {
            ended_ = !source_->track.feedDecoder();
        } else if (result < 0) {
            ended_ = result == AVERROR_EOF;
        } else if (!isDamaged(*frame)) {
            const double time = static_cast<double>(frame->best_effort_timestamp) * source_->track.tick();
            ended_ = time >= source_->end;
            if (!ended_) return DecodedFrame(std::move(frame), time, source_->rotation);
        }
    }
    return std::nullopt;
}

std::optional<DecodedFrame> MovieReader::skipTo(double time) {
    Source& source = *source_;
    if (ended_ || !seekKeyFrame(source, time)) return next();
    avcodec_flush_buffers(source.track.decoder.get());
    auto frame = next();
    if (frame && frame->time() <= time) return frame;
    // Seeking wasn't exact enough, or led behind the last picture: once more from the beginning.
    ended_ = false;
    seekKeyFrame(source, 0);
    avcodec_flush_buffers(source.track.decoder.get());
    return next();
}

double MovieReader::scanDuration(const std::filesystem::path& path) {
    const InputHandle input = openInput(path);
    const AVStream& stream = selectTrack(*input, AVMEDIA_TYPE_VIDEO);
    const LibavHandle<AVPacket> packet(av_packet_alloc());
    std::int64_t end = 0;
    while (av_read_frame(input.get(), packet.get()) >= 0) {
        if (packet->stream_index == stream.index) end = std::max(end, packet->pts + packet->duration);
        av_packet_unref(packet.get());
    }
    requireUnbrokenReading(*input);
    return static_cast<double>(end) * av_q2d(stream.time_base);
}

}  // namespace tessaloom
