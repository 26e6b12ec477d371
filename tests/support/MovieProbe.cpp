// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/MovieProbe.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>

namespace tessaloom::test {
namespace {

struct InputClose {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
};

struct PacketFree {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

std::unique_ptr<AVFormatContext, InputClose> open(const std::filesystem::path& path) {
    AVFormatContext* opened = nullptr;
    if (avformat_open_input(&opened, path.c_str(), nullptr, nullptr) < 0)
        throw std::runtime_error("not a movie: " + path.string());
    std::unique_ptr<AVFormatContext, InputClose> input(opened);
    avformat_find_stream_info(opened, nullptr);
    return input;
}

std::string content(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string colorNames(const AVCodecParameters& parameters) {
    const auto text = [](const char* name) { return std::string(name != nullptr ? name : "none"); };
    return text(av_color_space_name(parameters.color_space)) + " " +
           text(av_color_primaries_name(parameters.color_primaries)) + " " +
           text(av_color_transfer_name(parameters.color_trc)) + " " +
           text(av_color_range_name(parameters.color_range));
}

std::uint64_t bigEndian(const std::string& bytes, std::size_t offset, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value = value << 8 | static_cast<std::uint8_t>(bytes[offset + i]);
    return value;
}

/// By the header of the packet's first H.264 unit, which comes after the four bytes of its length.
bool isUnreferencedSlice(const AVPacket& packet) {
    constexpr int unreferencedSlice = 1;
    return packet.size > 4 && packet.data[4] == unreferencedSlice;
}

}  // namespace

std::vector<double> MovieFacts::times() const {
    std::vector<double> times;
    for (const Packet& packet : packets)
        times.push_back(packet.time);
    return times;
}

MovieFacts probeMovie(const std::filesystem::path& path) {
    const auto input = open(path);
    AVFormatContext* opened = input.get();
    const int index = av_find_best_stream(opened, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (index < 0) throw std::runtime_error("no pictures in " + path.string());
    const AVStream& stream = *opened->streams[index];
    const AVCodecParameters& parameters = *stream.codecpar;

    MovieFacts facts{.width = parameters.width,
                     .height = parameters.height,
                     .colors = colorNames(parameters),
                     .profile = avcodec_profile_name(parameters.codec_id, parameters.profile),
                     .bitRate = static_cast<double>(parameters.bit_rate),
                     .packets = {}};
    const std::unique_ptr<AVPacket, PacketFree> packet(av_packet_alloc());
    while (av_read_frame(opened, packet.get()) >= 0) {
        if (packet->stream_index == index)
            facts.packets.push_back({static_cast<double>(packet->pts) * av_q2d(stream.time_base),
                                     (packet->flags & AV_PKT_FLAG_KEY) != 0, isUnreferencedSlice(*packet),
                                     packet->size});
        av_packet_unref(packet.get());
    }
    std::ranges::sort(facts.packets, {}, &MovieFacts::Packet::time);
    return facts;
}

std::optional<SoundFacts> probeSound(const std::filesystem::path& path) {
    const auto input = open(path);
    const int index = av_find_best_stream(input.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0) return std::nullopt;
    const AVStream& stream = *input->streams[index];
    const double tick = av_q2d(stream.time_base);
    SoundFacts facts{.codec = avcodec_get_name(stream.codecpar->codec_id),
                     .rate = stream.codecpar->sample_rate,
                     .channels = stream.codecpar->ch_layout.nb_channels,
                     .firstPacketTime = 0,
                     .startTime = static_cast<double>(stream.start_time) * tick,
                     .duration = static_cast<double>(stream.duration) * tick,
                     .bitRate = static_cast<double>(stream.codecpar->bit_rate)};
    const std::unique_ptr<AVPacket, PacketFree> packet(av_packet_alloc());
    while (av_read_frame(input.get(), packet.get()) >= 0 && packet->stream_index != index)
        av_packet_unref(packet.get());
    facts.firstPacketTime = static_cast<double>(packet->pts) * tick;
    return facts;
}

double widestStep(const std::filesystem::path& path) {
    const auto input = open(path);
    std::map<std::int64_t, double> times;
    const std::unique_ptr<AVPacket, PacketFree> packet(av_packet_alloc());
    while (av_read_frame(input.get(), packet.get()) >= 0) {
        const AVStream& stream = *input->streams[packet->stream_index];
        times[packet->pos] = static_cast<double>(packet->dts) * av_q2d(stream.time_base);
        av_packet_unref(packet.get());
    }
    double widest = 0;
    double last = times.empty() ? 0 : times.begin()->second;
    for (const auto& [place, time] : times)
        widest = std::max(widest, std::abs(time - std::exchange(last, time)));
    return widest;
}

std::vector<std::string> topLevelBoxes(const std::filesystem::path& path) {
    const std::string bytes = content(path);
    std::vector<std::string> names;
    for (std::size_t offset = 0; offset + 8 <= bytes.size();) {
        names.push_back(bytes.substr(offset + 4, 4));
        std::uint64_t size = bigEndian(bytes, offset, 4);
        if (size == 1 && offset + 16 <= bytes.size()) size = bigEndian(bytes, offset + 8, 8);
        if (size < 8) break;
        offset += size;
    }
    return names;
}

bool fileContains(const std::filesystem::path& path, const std::string& text) {
    return content(path).find(text) != std::string::npos;
}

}  // namespace tessaloom::test
