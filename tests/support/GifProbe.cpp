// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/GifProbe.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tessaloom::test {
namespace {

class Bytes {
  public:
    explicit Bytes(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        content_.assign(std::istreambuf_iterator<char>(file), {});
    }

    int byte() { return static_cast<std::uint8_t>(take(1).front()); }
    int word() {
        const int low = byte();
        return low | byte() << 8;
    }
    std::string_view take(std::size_t count) {
        if (position_ + count > content_.size()) throw std::runtime_error("the GIF ends too early");
        const auto part = std::string_view(content_).substr(position_, count);
        position_ += count;
        return part;
    }
    /// Sub-blocks up to the empty one, as one text.
    std::string blocks() {
        std::string text;
        while (const int size = byte())
            text += take(static_cast<std::size_t>(size));
        return text;
    }
    void skipPalette(int flags) { take(std::size_t{3} << ((flags & 7) + 1)); }
    bool atEnd() const { return position_ == content_.size(); }

  private:
    std::string content_;
    std::size_t position_ = 0;
};

void readExtension(Bytes& bytes, GifFacts& facts, int& delay) {
    const int label = bytes.byte();
    const std::string text = bytes.blocks();
    const auto number = [&text](std::size_t place) {
        return static_cast<std::uint8_t>(text.at(place)) | static_cast<std::uint8_t>(text.at(place + 1)) << 8;
    };
    if (label == 0xF9) delay = number(1);
    if (label == 0xFF && text.starts_with("NETSCAPE2.0")) facts.loopCount = number(12);
}

GifFacts::Frame readFrame(Bytes& bytes, int delay) {
    GifFacts::Frame frame{.area = {}, .delay = delay, .hasOwnPalette = false};
    for (int* number : {&frame.area.x, &frame.area.y, &frame.area.width, &frame.area.height})
        *number = bytes.word();
    const int flags = bytes.byte();
    frame.hasOwnPalette = (flags & 0x80) != 0;
    if (frame.hasOwnPalette) bytes.skipPalette(flags);
    bytes.byte();
    bytes.blocks();
    return frame;
}

struct Close {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};

void require(int code) {
    if (code < 0) throw std::runtime_error("FFmpeg can't read the GIF");
}

}  // namespace

std::vector<int> GifFacts::delays() const {
    std::vector<int> delays;
    for (const Frame& frame : frames)
        delays.push_back(frame.delay);
    return delays;
}

GifFacts probeGif(const std::filesystem::path& path) {
    Bytes bytes(path);
    if (bytes.take(6) != "GIF89a") throw std::runtime_error("no GIF: " + path.string());
    GifFacts facts;
    facts.width = bytes.word();
    facts.height = bytes.word();
    const int flags = bytes.byte();
    bytes.take(2);
    if ((flags & 0x80) != 0) bytes.skipPalette(flags);
    int delay = 0;
    for (int kind = bytes.byte(); kind != 0x3B; kind = bytes.byte()) {
        if (kind == 0x21) {
            readExtension(bytes, facts, delay);
        } else if (kind == 0x2C) {
            facts.frames.push_back(readFrame(bytes, delay));
        } else {
            throw std::runtime_error("the GIF has an unknown block");
        }
    }
    if (!bytes.atEnd()) throw std::runtime_error("the GIF goes on behind its end");
    return facts;
}

std::vector<BgraImage> shownPictures(const std::filesystem::path& gif) {
    AVFormatContext* opened = nullptr;
    require(avformat_open_input(&opened, gif.c_str(), nullptr, nullptr));
    const std::unique_ptr<AVFormatContext, Close> input(opened);
    const AVCodec* decoder = avcodec_find_decoder(AV_CODEC_ID_GIF);
    const std::unique_ptr<AVCodecContext, Close> codec(avcodec_alloc_context3(decoder));
    require(avcodec_parameters_to_context(codec.get(), input->streams[0]->codecpar));
    require(avcodec_open2(codec.get(), decoder, nullptr));
    const std::unique_ptr<AVPacket, Close> packet(av_packet_alloc());
    const std::unique_ptr<AVFrame, Close> frame(av_frame_alloc());
    std::vector<BgraImage> pictures;
    while (av_read_frame(input.get(), packet.get()) >= 0) {
        require(avcodec_send_packet(codec.get(), packet.get()));
        av_packet_unref(packet.get());
        require(avcodec_receive_frame(codec.get(), frame.get()));
        copyPixels({frame->data[0], frame->width, frame->height, frame->linesize[0]},
                   pictures.emplace_back());
    }
    return pictures;
}

}  // namespace tessaloom::test
