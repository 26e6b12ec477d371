// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "media/H264Settings.h"
#include "media/PictureMotion.h"
#include "media/PictureRepeater.h"
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

    /// Reads `image` before it returns and keeps no reference to it. Times must ascend. Without motion, the
    /// image must be the one before.
    void encode(const YuvImage& image, std::int64_t ticks, PictureMotion motion, const PacketSink& sink);

    /// Hands out what is still inside; nothing may be encoded afterwards.
    void finish(const PacketSink& sink);

  private:
    struct Codec;

    bool keyFrameIsDue(std::int64_t ticks) const;
    void choosePrediction(AVFrame& frame);
    int coarsening(PictureMotion motion) const;
    bool mayRepeat(std::int64_t ticks) const;
    bool isAsFineAsUseful() const;
    void countRefinements(PictureMotion motion);
    void learnFrom(const AVPacket& packet);
    void drain(const PacketSink& sink);
    void passOn(AVPacket& packet, const PacketSink& sink);
    void repeatUntil(std::int64_t ticks, const PacketSink& sink);
    void put(std::span<const std::uint8_t> bytes, std::int64_t ticks, int flags, const PacketSink& sink);

    H264Settings settings_;
    std::int64_t keyFrameTicks_;
    std::int64_t refinementTicks_;
    /// Asked for, or chosen by the encoder.
    std::optional<std::int64_t> lastKeyFrame_;
    /// What the rate control wanted for the picture that came out last, before it was made coarser.
    std::optional<int> wantedQuantiser_;
    /// When the encoder got its last picture, and how often it is to get that again before it may be repeated
    /// without.
    std::optional<std::int64_t> lastEncoded_;
    int refinements_;
    std::unique_ptr<Codec> codec_;
    std::optional<PictureRepeater> repeater_;
    /// When the encoder's last picture is to be shown again, and the encoder may not have handed it out yet.
    std::deque<std::int64_t> repeats_;
};

}  // namespace tessaloom
