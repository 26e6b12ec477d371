// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/MovieReader.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "media/LibavHandles.h"

namespace tessaloom {
namespace {

struct InputClose {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
};
using InputHandle = std::unique_ptr<AVFormatContext, InputClose>;

InputHandle openInput(const std::filesystem::path& path) {
    quietLibav();
    const std::string problem = "\"" + path.filename().string() + "\" can't be read";
    AVFormatContext* input = nullptr;
    requireLibav(avformat_open_input(&input, path.c_str(), nullptr, nullptr), problem);
    InputHandle handle(input);
    input->flags |= AVFMT_FLAG_DISCARD_CORRUPT;
    requireLibav(avformat_find_stream_info(input, nullptr), problem);
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
    if (video == nullptr) throw NoVideoTrack("The file has no video track.");
    return *video;
}

LibavHandle<AVCodecContext> openDecoder(const AVStream& stream) {
    const AVCodec* decoder = avcodec_find_decoder(stream.codecpar->codec_id);
    if (decoder == nullptr) throw MediaError("The video's encoding is unknown here.");
    LibavHandle<AVCodecContext> context(avcodec_alloc_context3(decoder));
    requireLibav(avcodec_parameters_to_context(context.get(), stream.codecpar), "The video can't be decoded");
    context->thread_count = 0;
    context->pkt_timebase = stream.time_base;
    requireLibav(avcodec_open2(context.get(), decoder, nullptr), "The video can't be decoded");
    return context;
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
    double end = std::numeric_limits<double>::infinity();
};

std::unique_ptr<MovieReader> MovieReader::open(const std::filesystem::path& path,
                                               std::optional<TimeRange> range) {
    InputHandle input = openInput(path);
    AVStream& stream = videoTrack(*input);
    auto source = std::make_unique<Source>(Source{std::move(input), stream, openDecoder(stream)});
    if (range) {
        source->end = range->end;
        const auto start = static_cast<std::int64_t>(std::floor(range->start / av_q2d(stream.time_base)));
        // A file that can't seek is read from its beginning.
        av_seek_frame(source->input.get(), stream.index, start, AVSEEK_FLAG_BACKWARD);
    }
    return std::unique_ptr<MovieReader>(new MovieReader(std::move(source)));
}

MovieReader::MovieReader(std::unique_ptr<Source> source) : source_(std::move(source)) {}

MovieReader::~MovieReader() = default;

int MovieReader::naturalWidth() const {
    return source_->stream.codecpar->width;
}

int MovieReader::naturalHeight() const {
    return source_->stream.codecpar->height;
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
            if (!ended_) return DecodedFrame(std::shared_ptr<const AVFrame>(std::move(frame)), time);
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
