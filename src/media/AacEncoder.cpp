// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/AacEncoder.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

#include <algorithm>

#include "media/LibavHandles.h"

namespace tessaloom {

struct AacEncoder::Codec {
    LibavHandle<AVCodecContext> context;
    LibavHandle<AVFrame> frame{av_frame_alloc()};
    LibavHandle<AVPacket> packet{av_packet_alloc()};
    int filled = 0;  ///< samples of each channel that wait in the frame
};

namespace {

LibavHandle<AVCodecContext> openEncoder(const AacSettings& settings) {
    const AVCodec* encoder = avcodec_find_encoder_by_name("aac");
    if (encoder == nullptr) throw MediaError("This FFmpeg has no AAC encoder.");
    LibavHandle<AVCodecContext> context(avcodec_alloc_context3(encoder));
    context->sample_fmt = AV_SAMPLE_FMT_FLTP;
    context->sample_rate = settings.sampleRate;
    av_channel_layout_default(&context->ch_layout, settings.channels);
    context->bit_rate = settings.bitRate;
    context->time_base = {1, settings.sampleRate};
    context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    requireLibav(avcodec_open2(context.get(), encoder, nullptr), "The sound encoder can't be opened");
    return context;
}

void prepareFrame(AVFrame& frame, const AVCodecContext& context) {
    av_frame_unref(&frame);
    frame.format = context.sample_fmt;
    frame.sample_rate = context.sample_rate;
    frame.nb_samples = context.frame_size;
    requireLibav(av_channel_layout_copy(&frame.ch_layout, &context.ch_layout), "Sound can't be encoded");
    requireLibav(av_frame_get_buffer(&frame, 0), "Sound can't be encoded");
}

}  // namespace

AacEncoder::AacEncoder(const AacSettings& settings)
    : channels_(static_cast<std::size_t>(settings.channels)),
      codec_(std::make_unique<Codec>(Codec{.context = openEncoder(settings)})) {}

AacEncoder::~AacEncoder() = default;

void AacEncoder::copyParameters(AVCodecParameters& target) const {
    requireLibav(avcodec_parameters_from_context(&target, codec_->context.get()),
                 "The sound stream can't be described");
}

void AacEncoder::encode(std::span<const float> interleaved, const PacketSink& sink) {
    Codec& codec = *codec_;
    std::size_t left = interleaved.size() / channels_;
    const float* source = interleaved.data();
    while (left > 0) {
        if (codec.filled == 0) prepareFrame(*codec.frame, *codec.context);
        const int count = std::min(codec.frame->nb_samples - codec.filled, static_cast<int>(left));
        for (std::size_t channel = 0; channel < channels_; ++channel) {
            auto* plane = reinterpret_cast<float*>(codec.frame->extended_data[channel]) + codec.filled;
            for (int i = 0; i < count; ++i)
                plane[i] = source[static_cast<std::size_t>(i) * channels_ + channel];
        }
        codec.filled += count;
        source += static_cast<std::size_t>(count) * channels_;
        left -= static_cast<std::size_t>(count);
        if (codec.filled == codec.frame->nb_samples) sendFrame(sink);
    }
}

void AacEncoder::finish(const PacketSink& sink) {
    if (codec_->filled > 0) {
        codec_->frame->nb_samples = codec_->filled;
        sendFrame(sink);
    }
    requireLibav(avcodec_send_frame(codec_->context.get(), nullptr), "The sound can't be completed");
    drain(sink);
}

void AacEncoder::sendFrame(const PacketSink& sink) {
    Codec& codec = *codec_;
    codec.frame->pts = framesSent_;
    framesSent_ += codec.filled;
    codec.filled = 0;
    requireLibav(avcodec_send_frame(codec.context.get(), codec.frame.get()), "Sound can't be encoded");
    drain(sink);
}

void AacEncoder::drain(const PacketSink& sink) {
    AVPacket& packet = *codec_->packet;
    for (;;) {
        const int result = avcodec_receive_packet(codec_->context.get(), &packet);
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
        requireLibav(result, "Sound can't be encoded");
        sink(packet);
        av_packet_unref(&packet);
    }
}

}  // namespace tessaloom
