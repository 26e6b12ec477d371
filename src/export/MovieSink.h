// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <optional>
#include <stop_token>

#include "export/AudioMix.h"
#include "export/FrameSink.h"
#include "export/SoundPump.h"
#include "media/MovieWriter.h"

namespace tessaloom {

/// Writes an export's frames into a movie, at 60 a second, and its sound at the pace of the frames.
class MovieSink final : public FrameSink<YuvImage> {
  public:
    static constexpr double framesPerSecond = 60;

    /// The writer has a sound track exactly where there is a mix. Sound stops being mixed once `stop` is
    /// requested.
    MovieSink(std::unique_ptr<MovieWriter> writer, std::optional<AudioMix> mix, std::stop_token stop);

    /// Throws MediaError, and ExportCancelled once stopped.
    void append(std::int64_t index, const YuvImage& picture, FrameChange change) override;

    /// Writes the sound that is left and completes the file. Throws like append.
    void finish();

  private:
    std::unique_ptr<MovieWriter> writer_;
    std::optional<SoundPump> sound_;
    std::stop_token stop_;
};

}  // namespace tessaloom
