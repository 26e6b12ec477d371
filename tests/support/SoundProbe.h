// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace tessaloom::test {

/// A file's first sound track on the file's timeline, decoded by FFmpeg without a reader of ours.
struct DecodedSound {
    int sampleRate = 0;
    int channels = 0;
    std::int64_t bitRate = 0;
    /// The first channel; the first sample is at time 0, and what the file leaves out is silence.
    std::vector<float> samples;

    double duration() const { return static_cast<double>(samples.size()) / sampleRate; }
    /// The loudest sample between two times in seconds.
    float peak(double from, double to) const;
    /// When the sound first exceeds `level` at or after `from`, in seconds.
    std::optional<double> onset(float level, double from = 0) const;
    /// The same for the first onset that follows this many seconds of less.
    std::optional<double> onsetAfterSilence(float level, double silence) const;
};

/// Throws std::runtime_error for a file that can't be read or has no sound.
DecodedSound decodeSound(const std::filesystem::path& path);

}  // namespace tessaloom::test
