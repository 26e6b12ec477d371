// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/AacEncoder.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

#include <algorithm>
#include <utility>

#include "media/LibavHandles.h"

namespace tessaloom {
namespace {

constexpr std::int64_t bitRate = 128'000;
constexpr auto problem = "The sound can't be encoded";

LibavHandle<AVCodecContext> openEncoder() {
    quietLibav();
    const AVCodec* encoder = avcodec_find_encoder_by_name("aac");
    if (encoder == nullptr) throw MediaError("This FFmpeg has no AAC encoder.");
    LibavHandle<AVCodecContext> context(avcodec_alloc_context3(encoder));
    context->bit_rate = bitRate;
    context->sample_rate = soundRate;
    context->sample_fmt = AV_SAMPLE_FMT_FLTP;
    context->ch_layout = AV_CHANNEL_LAYOUT_STEREO;
    context->time_base = {1, soundRate};
    context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    requireLibav(avcodec_open2(context.get(), encoder, nullptr), "The sound encoder can't be opened");
    return context;
}

}  // namespace

struct AacEncoder::Codec {
    LibavHandle<AVCodecContext> context = openEncoder();
    LibavHandle<AVFrame> frame{av_frame_alloc()};
    LibavHandle<AVPacket> packet{av_packet_alloc()};
    std::size_t frameSize = static_cast<std::size_t>(context->frame_size);
};

AacEncoder::AacEncoder() : codec_(std::make_unique<Codec>()) {}

AacEncoder::~AacEncoder() = default;

void AacEncoder::copyParameters(AVCodecParameters& target) const {
    requireLibav(avcodec_parameters_from_context(&target, codec_->context.get()),
                 "The sound stream can't be described");
}

void AacEncoder::encode(std::span<const StereoSample> sound, const PacketSink& sink) {
    while (!sound.empty()) {
        const auto count = std::min(sound.size(), codec_->frameSize - pending_.size());
        pending_.insert(pending_.end(), sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(count));
        sound = sound.subspan(count);
        if (pending_.size() == codec_->frameSize) encodePending(sink);
    }
}

void AacEncoder::finish(const PacketSink& sink) {
    if (!pending_.empty()) encodePending(sink);
    requireLibav(avcodec_send_frame(codec_->context.get(), nullptr), "The sound can't be completed");
    drain(sink);
}

void AacEncoder::encodePending(const PacketSink& sink) {
    AVFrame& frame = *codec_->frame;
    frame.format = AV_SAMPLE_FMT_FLTP;
    frame.nb_samples = static_cast<int>(pending_.size());
    frame.sample_rate = soundRate;
    frame.ch_layout = AV_CHANNEL_LAYOUT_STEREO;
    frame.pts = std::exchange(position_, position_ + frame.nb_samples);
    requireLibav(av_frame_get_buffer(&frame, 0), problem);
    for (std::size_t i = 0; i < pending_.size(); ++i) {
        reinterpret_cast<float*>(frame.data[0])[i] = pending_[i].left;
        reinterpret_cast<float*>(frame.data[1])[i] = pending_[i].right;
    }
    pending_.clear();
    const int result = avcodec_send_frame(codec_->context.get(), &frame);
    av_frame_unref(&frame);
    requireLibav(result, problem);
    drain(sink);
}

void AacEncoder::drain(const PacketSink& sink) {
    AVPacket& packet = *codec_->packet;
    for (;;) {
        const int result = avcodec_receive_packet(codec_->context.get(), &packet);
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
        requireLibav(result, problem);
        sink(packet);
        av_packet_unref(&packet);
    }
}

}  // namespace tessaloom
