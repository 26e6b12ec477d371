// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "media/H264Settings.h"
#include "media/YuvImage.h"

struct AVCodecParameters;
struct AVPacket;

namespace tessaloom {

/// An encoder of H.264 behind its settings: pictures in, packets out. Used by one thread at a time.
/// Every operation throws EncodingError with the encoder's reason.
class H264Encoder {
  public:
    /// Takes each finished packet, its times in ticks of the settings' timescale. The packet is the
    /// encoder's own and may be modified.
    using PacketSink = std::function<void(AVPacket&)>;

    explicit H264Encoder(const H264Settings& settings);
    ~H264Encoder();

    /// Describes the stream for a container, colour tags included.
    void copyParameters(AVCodecParameters& target) const;

    /// Reads `image` before it returns and keeps no reference to it. Times must ascend.
    void encode(const YuvImage& image, std::int64_t ticks, const PacketSink& sink);

    /// Hands out what is still inside; nothing may be encoded afterwards.
    void finish(const PacketSink& sink);

  private:
    struct Codec;

    bool keyFrameIsDue(std::int64_t ticks) const;
    void drain(const PacketSink& sink);

    std::int64_t keyFrameTicks_;
    std::optional<std::int64_t> lastKeyFrame_;
    std::unique_ptr<Codec> codec_;
};

}  // namespace tessaloom
