// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

struct AVCodecParameters;
struct AVPacket;

namespace tessaloom {

/// How sound is encoded.
struct AacSettings {
    int sampleRate = 48'000;
    int channels = 2;
    /// Bits a second on average.
    std::int64_t bitRate = 128'000;
};

/// FFmpeg's own AAC encoder behind its settings: samples in, packets out. Used by one thread at a time.
/// Every operation throws MediaError with the encoder's reason.
class AacEncoder {
  public:
    /// Takes each finished packet, its times counted in samples. The first sample given has time 0; what the
    /// encoder needs to warm up comes before it, at negative times. The packet is the encoder's own and may
    /// be modified.
    using PacketSink = std::function<void(AVPacket&)>;

    explicit AacEncoder(const AacSettings& settings);
    ~AacEncoder();

    /// Describes the stream for a container.
    void copyParameters(AVCodecParameters& target) const;

    /// Appends interleaved samples, -1 to 1, any number of whole frames of them.
    void encode(std::span<const float> interleaved, const PacketSink& sink);

    /// Hands out what is still inside; nothing may be encoded afterwards.
    void finish(const PacketSink& sink);

  private:
    struct Codec;

    void sendFrame(const PacketSink& sink);
    void drain(const PacketSink& sink);

    std::size_t channels_;
    std::int64_t framesSent_ = 0;  ///< samples of each channel
    std::unique_ptr<Codec> codec_;
};

}  // namespace tessaloom
