// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tessaloom::test {

/// What a movie file's first video track says of itself, read by FFmpeg without our reader.
struct MovieFacts {
    struct Packet {
        double time = 0;
        bool key = false;
        /// Of H.264: no other picture is predicted from it.
        bool disposable = false;
        int bytes = 0;
    };

    int width = 0;
    int height = 0;
    /// Matrix, primaries, transfer function and range by FFmpeg's names, joined by blanks.
    std::string colors;
    std::string profile;
    /// Bits a second on average.
    double bitRate = 0;
    /// In order of presentation.
    std::vector<Packet> packets;

    std::vector<double> times() const;
};

/// The same of the first sound track.
struct SoundFacts {
    std::string codec;
    int rate = 0;
    int channels = 0;
    /// Seconds; the first packet begins before zero where a decoder needs a run-up.
    double firstPacketTime = 0;
    double startTime = 0;
    double duration = 0;
    /// Bits a second on average.
    double bitRate = 0;
};

/// Nothing for a file without a sound track.
std::optional<SoundFacts> probeSound(const std::filesystem::path& path);

MovieFacts probeMovie(const std::filesystem::path& path);

/// The greatest difference in time, in seconds, between packets of whatever track that are neighbours in the
/// file.
double widestStep(const std::filesystem::path& path);

/// The names of the boxes at the file's top level, in order.
std::vector<std::string> topLevelBoxes(const std::filesystem::path& path);

/// True when the bytes of `text` occur in the file.
bool fileContains(const std::filesystem::path& path, const std::string& text);

}  // namespace tessaloom::test
