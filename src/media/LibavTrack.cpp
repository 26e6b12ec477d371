// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/LibavTrack.h"

#include <algorithm>
#include <utility>

#include "base/Log.h"

namespace tessaloom {
namespace {

/// Throws UnreadableMovie when `code`, a libav return value, is an error.
void requireReadable(int code, const char* file) {
    if (code >= 0) return;
    const auto name = std::filesystem::path(file).filename().string();
    throw UnreadableMovie("\"" + name + "\" can't be read: " + libavReason(code) + ".");
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

}  // namespace

InputHandle openInput(const std::filesystem::path& path) {
    quietLibav();
    AVFormatContext* input = nullptr;
    requireReadable(avformat_open_input(&input, path.c_str(), nullptr, nullptr), path.c_str());
    InputHandle handle(input);
    input->flags |= AVFMT_FLAG_DISCARD_CORRUPT;
    requireReadable(avformat_find_stream_info(input, nullptr), path.c_str());
    return handle;
}

AVStream& selectTrack(AVFormatContext& input, AVMediaType type) {
    AVStream* selected = nullptr;
    for (unsigned i = 0; i < input.nb_streams; ++i) {
        AVStream* stream = input.streams[i];
        if (stream->codecpar->codec_type == type && selected == nullptr) {
            selected = stream;
        } else {
            stream->discard = AVDISCARD_ALL;
        }
    }
    if (selected != nullptr) return *selected;
    const auto name = "\"" + std::filesystem::path(input.url).filename().string() + "\"";
    if (type == AVMEDIA_TYPE_AUDIO) throw NoAudioTrack(name + " has no sound.");
    throw NoVideoTrack(name + " has no video track.");
}

LibavTrack LibavTrack::open(const std::filesystem::path& path, AVMediaType type) {
    InputHandle input = openInput(path);
    AVStream& stream = selectTrack(*input, type);
    return {std::move(input), stream, openDecoder(stream, path.c_str())};
}

void requireUnbrokenReading(const AVFormatContext& input) {
    const int failure = input.pb != nullptr ? input.pb->error : 0;
    if (failure != AVERROR_EOF) requireReadable(failure, input.url);
}

bool LibavTrack::feedDecoder() {
    while (av_read_frame(input.get(), packet.get()) >= 0) {
        const bool wanted = packet->stream_index == stream.index;
        if (wanted && packet->pts != AV_NOPTS_VALUE) end = std::max(end, packet->pts + packet->duration);
        // A packet that the decoder refuses is damaged: the ones behind it may be sound.
        const bool taken = wanted && avcodec_send_packet(decoder.get(), packet.get()) >= 0;
        av_packet_unref(packet.get());
        if (taken) return true;
    }
    requireUnbrokenReading(*input);
    if (end > 0 && isTorn() && !std::exchange(toldOfTear, true)) {
        qCWarning(Log::exporting, "\"%s\" was cut off. What is left of it ends at %.1f s.",
                  std::filesystem::path(input->url).filename().c_str(), static_cast<double>(end) * tick());
    }
    return avcodec_send_packet(decoder.get(), nullptr) >= 0;
}

bool LibavTrack::isTorn() const {
    const int count = avformat_index_get_entries_count(&stream);
    const AVIndexEntry* last = avformat_index_get_entry(&stream, count - 1);
    return last != nullptr && input->pb != nullptr && last->pos + last->size > avio_size(input->pb);
}

bool isDamaged(const AVFrame& frame) {
    return frame.decode_error_flags != 0 || (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0;
}

}  // namespace tessaloom
