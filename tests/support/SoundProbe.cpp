// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SoundProbe.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>

namespace tessaloom::test {
namespace {

struct LibavFree {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
template <typename Object>
using Handle = std::unique_ptr<Object, LibavFree>;

Handle<AVCodecContext> openDecoder(const AVCodecParameters& parameters, AVRational timeBase) {
    const AVCodec* decoder = avcodec_find_decoder(parameters.codec_id);
    Handle<AVCodecContext> codec(avcodec_alloc_context3(decoder));
    avcodec_parameters_to_context(codec.get(), &parameters);
    codec->pkt_timebase = timeBase;
    if (avcodec_open2(codec.get(), decoder, nullptr) < 0)
        throw std::runtime_error("no decoder for the sound");
    return codec;
}

void place(const AVFrame& frame, AVRational timeBase, DecodedSound& sound) {
    const auto start = std::llround(static_cast<double>(frame.pts) * av_q2d(timeBase) * sound.sampleRate);
    const auto* plane = reinterpret_cast<const float*>(frame.extended_data[0]);
    for (int i = 0; i < frame.nb_samples; ++i) {
        const auto index = static_cast<std::int64_t>(start) + i;
        if (index < 0) continue;
        if (static_cast<std::size_t>(index) >= sound.samples.size())
            sound.samples.resize(static_cast<std::size_t>(index) + 1);
        sound.samples[static_cast<std::size_t>(index)] = plane[i];
    }
}

std::size_t indexAt(const DecodedSound& sound, double time) {
    const double index = std::max(time, 0.0) * sound.sampleRate;
    return std::min(static_cast<std::size_t>(index), sound.samples.size());
}

}  // namespace

float DecodedSound::peak(double from, double to) const {
    float loudest = 0;
    for (std::size_t i = indexAt(*this, from); i < indexAt(*this, to); ++i)
        loudest = std::max(loudest, std::abs(samples[i]));
    return loudest;
}

std::optional<double> DecodedSound::onset(float level, double from) const {
    for (std::size_t i = indexAt(*this, from); i < samples.size(); ++i)
        if (std::abs(samples[i]) > level) return static_cast<double>(i) / sampleRate;
    return std::nullopt;
}

std::optional<double> DecodedSound::onsetAfterSilence(float level, double silence) const {
    const auto wanted = static_cast<std::size_t>(silence * sampleRate);
    std::size_t quiet = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const bool loud = std::abs(samples[i]) > level;
        if (loud && quiet >= wanted) return static_cast<double>(i) / sampleRate;
        quiet = loud ? 0 : quiet + 1;
    }
    return std::nullopt;
}

DecodedSound decodeSound(const std::filesystem::path& path) {
    AVFormatContext* opened = nullptr;
    if (avformat_open_input(&opened, path.c_str(), nullptr, nullptr) < 0)
        throw std::runtime_error("not a media file: " + path.string());
    const Handle<AVFormatContext> input(opened);
    const int index = av_find_best_stream(opened, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0) throw std::runtime_error("no sound in " + path.string());
    const AVStream& stream = *opened->streams[index];
    const auto codec = openDecoder(*stream.codecpar, stream.time_base);
    DecodedSound sound{.sampleRate = stream.codecpar->sample_rate,
                       .channels = stream.codecpar->ch_layout.nb_channels,
                       .bitRate = stream.codecpar->bit_rate,
                       .samples = {}};
    const Handle<AVPacket> packet(av_packet_alloc());
    const Handle<AVFrame> frame(av_frame_alloc());
    bool more = true;
    while (more) {
        more = av_read_frame(opened, packet.get()) >= 0;
        if (more && packet->stream_index == index) avcodec_send_packet(codec.get(), packet.get());
        if (!more) avcodec_send_packet(codec.get(), nullptr);
        av_packet_unref(packet.get());
        while (avcodec_receive_frame(codec.get(), frame.get()) >= 0)
            place(*frame, stream.time_base, sound);
    }
    return sound;
}

}  // namespace tessaloom::test
