// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>

#include "export/ExportStaging.h"
#include "export/FrameSink.h"
#include "media/GifEncoder.h"

namespace tessaloom {

/// Writes an export's frames into a GIF. Delays are whole hundredths of a second, each taken from the running
/// total, so that their sum stays exact. Used by one thread at a time.
///
/// What can't be written is Exporter::Failure::gifFailed, with the system's reason nested in it.
class GIFWriter final : public FrameSink<BgraImage> {
  public:
    /// Stages `url`; `capacity` frames are planned, one at least. A GIF that doesn't loop plays once.
    GIFWriter(const std::filesystem::path& url, double fps, std::int64_t capacity, bool loop);

    /// Adds the next frame; those beyond the capacity are dropped. All have the first one's size.
    void add(const BgraView& image);
    /// Adds the frame before once more.
    void addAgain();

    /// Frames come one after another, whatever their index.
    void append(std::int64_t index, const BgraImage& picture, FrameChange change) override;

    /// Puts the file in its place.
    void finish();

    std::int64_t framesAdded() const { return framesAdded_; }
    std::int64_t framesDropped() const { return framesDropped_; }

  private:
    template <typename Action>
    void writeFrame(Action action);
    template <typename Action>
    void orRefuse(Action action);

    std::int64_t capacity_;
    double fps_;
    std::int64_t framesAdded_ = 0;
    std::int64_t framesDropped_ = 0;
    ExportStaging staging_;
    GifEncoder encoder_;
};

}  // namespace tessaloom
