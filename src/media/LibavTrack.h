// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

#include "media/LibavHandles.h"

namespace tessaloom {

struct InputClose {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
};
using InputHandle = std::unique_ptr<AVFormatContext, InputClose>;

/// The first video or sound track of a file, with its decoder; the file's other tracks are switched off.
/// Included by this folder's source files only.
struct LibavTrack {
    InputHandle input;
    AVStream& stream;
    LibavHandle<AVCodecContext> decoder;
    LibavHandle<AVPacket> packet{av_packet_alloc()};
    /// Of what was read so far, in ticks.
    std::int64_t end = 0;
    bool toldOfTear = false;

    /// `type` is AVMEDIA_TYPE_VIDEO or AVMEDIA_TYPE_AUDIO. Throws NoVideoTrack or NoAudioTrack, and
    /// UnreadableMovie with the system's reason when the file can't be opened.
    static LibavTrack open(const std::filesystem::path& path, AVMediaType type);

    /// Seconds in a tick of the track's times.
    double tick() const { return av_q2d(stream.time_base); }

    /// Feeds the decoder one more packet, or tells it that there are none left. False when it knew that
    /// already. A file that was cut off ends where it was, with a warning; one that the system can't read on
    /// is an UnreadableMovie with the system's reason.
    bool feedDecoder();

    /// The file is too short for what it says it holds.
    bool isTorn() const;
};

/// At the end of a file, which libav also sees where the system can't read on. Throws UnreadableMovie then.
void requireUnbrokenReading(const AVFormatContext& input);

/// Throws what LibavTrack::open throws.
InputHandle openInput(const std::filesystem::path& path);
AVStream& selectTrack(AVFormatContext& input, AVMediaType type);

/// The decoder met damage in it and made something up.
bool isDamaged(const AVFrame& frame);

}  // namespace tessaloom
