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

#include "media/LibavHandles.h"

namespace tessaloom {
namespace {

struct InputClose {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
};
using InputHandle = std::unique_ptr<AVFormatContext, InputClose>;

/// Throws UnreadableMovie when `code`, a libav return value, is an error.
void requireReadable(int code, const char* file) {
    if (code >= 0) return;
    const auto name = std::filesystem::path(file).filename().string();
    throw UnreadableMovie("\"" + name + "\" can't be read: " + libavReason(code) + ".");
}

InputHandle openInput(const std::filesystem::path& path) {
    quietLibav();
    AVFormatContext* input = nullptr;
    requireReadable(avformat_open_input(&input, path.c_str(), nullptr, nullptr), path.c_str());
    InputHandle handle(input);
    input->flags |= AVFMT_FLAG_DISCARD_CORRUPT;
    requireReadable(avformat_find_stream_info(input, nullptr), path.c_str());
    return handle;
}

/// The first video track; all others are switched off.
AVStream& videoTrack(AVFormatContext& input) {
    AVStream* video = nullptr;
    for (unsigned i = 0; i < input.nb_streams; ++i) {
        AVStream* stream = input.streams[i];
        const bool isVideo = stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO;
        if (isVideo && video == nullptr) {
            video = stream;
        } else {
            stream->discard = AVDISCARD_ALL;
        }
    }
    if (video == nullptr) {
        const auto name = std::filesystem::path(input.url).filename().string();
        throw NoVideoTrack("\"" + name + "\" has no video track.");
    }
    return *video;
}

LibavHandle<AVCodecContext> openDecoder(const AVStream& stream, const char* file) {
    const AVCodec* decoder = avcodec_find_decoder(stream.codecpar->codec_id);
    if (decoder == nullptr) requireReadable(AVERROR_DECODER_NOT_FOUND, file);
    LibavHandle<AVCodecContext> context(avcodec_alloc_context3(decoder));
    requireReadable(avcodec_parameters_to_context(context.get(), stream.codecpar), file);
    context->thread_count = 0;
    context->pkt_timebase = stream.time_base;
    requireReadable(avcodec_open2(context.get(), decoder, nullptr), file);
    return context;
}

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

bool isDamaged(const AVFrame& frame) {
    return frame.decode_error_flags != 0 || (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0;
}

}  // namespace

struct MovieReader::Source {
    InputHandle input;
    AVStream& stream;
    LibavHandle<AVCodecContext> decoder;
    LibavHandle<AVPacket> packet{av_packet_alloc()};
    Rotation rotation = rotationOf(stream);
    double end = std::numeric_limits<double>::infinity();
};

/// Goes to the key frame that is shown at or before `time`. A file that can't seek stays at its beginning.
void MovieReader::seekKeyFrame(Source& source, double time) {
    const int track = source.stream.index;
    const auto start = static_cast<std::int64_t>(std::floor(time / av_q2d(source.stream.time_base)));
    if (av_seek_frame(source.input.get(), track, start, AVSEEK_FLAG_BACKWARD) < 0) return;
    // Seeking goes by the times of decoding. Where pictures are stored out of order they are shown later.
    std::int64_t delay = 0;
    if (av_read_frame(source.input.get(), source.packet.get()) >= 0) {
        delay = std::max<std::int64_t>(source.packet->pts - source.packet->dts, 0);
        av_packet_unref(source.packet.get());
    }
    av_seek_frame(source.input.get(), track, start - delay, AVSEEK_FLAG_BACKWARD);
}

std::unique_ptr<MovieReader> MovieReader::open(const std::filesystem::path& path,
                                               std::optional<TimeRange> range) {
    InputHandle input = openInput(path);
    AVStream& stream = videoTrack(*input);
    auto source =
        std::make_unique<Source>(Source{std::move(input), stream, openDecoder(stream, path.c_str())});
    if (range) {
        source->end = range->end;
        seekKeyFrame(*source, range->start);
    }
    return std::unique_ptr<MovieReader>(new MovieReader(std::move(source)));
}

MovieReader::MovieReader(std::unique_ptr<Source> source) : source_(std::move(source)) {}

MovieReader::~MovieReader() = default;

int MovieReader::naturalWidth() const {
    const AVCodecParameters& track = *source_->stream.codecpar;
    return swapsSides(source_->rotation) ? track.height : track.width;
}

int MovieReader::naturalHeight() const {
    const AVCodecParameters& track = *source_->stream.codecpar;
    return swapsSides(source_->rotation) ? track.width : track.height;
}

std::optional<DecodedFrame> MovieReader::next() {
    while (!ended_) {
        LibavHandle<AVFrame> frame(av_frame_alloc());
        const int result = avcodec_receive_frame(source_->decoder.get(), frame.get());
        if (result == AVERROR(EAGAIN)) {
            ended_ = !decodeMore();
        } else if (result < 0) {
            ended_ = result == AVERROR_EOF;
        } else if (!isDamaged(*frame)) {
            const double time =
                static_cast<double>(frame->best_effort_timestamp) * av_q2d(source_->stream.time_base);
            ended_ = time >= source_->end;
            if (!ended_) return DecodedFrame(std::move(frame), time, source_->rotation);
        }
    }
    return std::nullopt;
}

/// Feeds the decoder one more packet, or tells it that there are none left. False when it knew that already.
bool MovieReader::decodeMore() {
    AVPacket* packet = source_->packet.get();
    while (av_read_frame(source_->input.get(), packet) >= 0) {
        const bool wanted = packet->stream_index == source_->stream.index;
        // A packet that the decoder refuses is damaged: the ones behind it may be sound.
        const bool taken = wanted && avcodec_send_packet(source_->decoder.get(), packet) >= 0;
        av_packet_unref(packet);
        if (taken) return true;
    }
    return avcodec_send_packet(source_->decoder.get(), nullptr) >= 0;
}

double MovieReader::scanDuration(const std::filesystem::path& path) {
    const InputHandle input = openInput(path);
    const AVStream& stream = videoTrack(*input);
    const LibavHandle<AVPacket> packet(av_packet_alloc());
    std::int64_t end = 0;
    while (av_read_frame(input.get(), packet.get()) >= 0) {
        if (packet->stream_index == stream.index) end = std::max(end, packet->pts + packet->duration);
        av_packet_unref(packet.get());
    }
    return static_cast<double>(end) * av_q2d(stream.time_base);
}

}  // namespace tessaloom
