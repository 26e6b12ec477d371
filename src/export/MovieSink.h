// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "export/FrameSink.h"
#include "media/MovieWriter.h"

namespace tessaloom {

/// Writes an export's frames into a movie, at 60 a second.
class MovieSink final : public FrameSink<YuvImage> {
  public:
    static constexpr double framesPerSecond = 60;

    explicit MovieSink(std::unique_ptr<MovieWriter> writer);

    /// Throws MediaError.
    void append(std::int64_t index, const YuvImage& picture, bool changed) override;

    /// Completes the file. Throws MediaError.
    void finish();

  private:
    std::unique_ptr<MovieWriter> writer_;
};

}  // namespace tessaloom
