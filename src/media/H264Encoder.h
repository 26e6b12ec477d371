// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "media/H264Settings.h"
#include "media/PictureMotion.h"
#include "media/YuvImage.h"

struct AVCodecParameters;
struct AVFrame;
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
    void encode(const YuvImage& image, std::int64_t ticks, PictureMotion motion, const PacketSink& sink);

    /// Hands out what is still inside; nothing may be encoded afterwards.
    void finish(const PacketSink& sink);

  private:
    struct Codec;

    bool keyFrameIsDue(std::int64_t ticks) const;
    void choosePrediction(AVFrame& frame);
    int coarsening(PictureMotion motion) const;
    void learnFrom(const AVPacket& packet);
    void drain(const PacketSink& sink);

    H264Settings settings_;
    std::int64_t keyFrameTicks_;
    /// Asked for, or chosen by the encoder.
    std::optional<std::int64_t> lastKeyFrame_;
    /// What the rate control wanted for the picture that came out last, before it was made coarser.
    std::optional<int> wantedQuantiser_;
    std::unique_ptr<Codec> codec_;
};

}  // namespace tessaloom
