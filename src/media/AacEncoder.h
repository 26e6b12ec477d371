// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "media/StereoSample.h"

struct AVCodecParameters;
struct AVPacket;

namespace tessaloom {

/// FFmpeg's own AAC encoder at 128 kbit/s: stereo at `soundRate` in, packets out. Used by one thread at a
/// time. Every operation throws MediaError with the encoder's reason.
class AacEncoder {
  public:
    /// Takes each finished packet, its times in samples. The first begins before 0, since a decoder needs a
    /// run-up; the container says so. The packet is the encoder's own and may be modified.
    using PacketSink = std::function<void(AVPacket&)>;

    AacEncoder();
    ~AacEncoder();

    /// Describes the stream for a container.
    void copyParameters(AVCodecParameters& target) const;

    /// The samples that follow those of the last call.
    void encode(std::span<const StereoSample> sound, const PacketSink& sink);

    /// Hands out what is still inside; nothing may be encoded afterwards.
    void finish(const PacketSink& sink);

  private:
    struct Codec;

    void encodePending(const PacketSink& sink);
    void drain(const PacketSink& sink);

    std::unique_ptr<Codec> codec_;
    /// Less than a frame of the encoder.
    std::vector<StereoSample> pending_;
    std::int64_t position_ = 0;
};

}  // namespace tessaloom
