// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>

#include "export/BoundedQueue.h"
#include "export/CanvasSize.h"
#include "export/HeldFrameReader.h"
#include "export/OutputTimeline.h"
#include "export/SoundPump.h"
#include "media/MovieWriter.h"
#include "render/FrameComposer.h"
#include "render/Renderer.h"

namespace tessaloom {

/// Carries an export's frames from the recording to the movie: decoding, drawing and encoding each have a
/// thread and hand their pictures on through short queues. Buffers come back and are used again, and a frame
/// that looks like the one before is neither drawn nor converted.
class FramePipeline {
  public:
    struct Parts {
        HeldFrameReader& recording;
        const OutputTimeline& timeline;
        const FrameComposer& composer;
        Renderer& renderer;
        CanvasSize canvas;
        MovieWriter& writer;
        SoundPump* sound;  ///< null for a silent movie
    };

    explicit FramePipeline(const Parts& parts);

    /// Runs to the end and returns how many frames were written; draws on the calling thread. `progress` gets
    /// the finished fraction there. Throws ExportCancelled, and what any stage throws.
    std::int64_t run(const std::function<void(double)>& progress, const std::stop_token& stop);

  private:
    /// One output frame with its picture of the recording; no picture means the one before.
    struct SourceFrame {
        std::int64_t index = 0;
        double time = 0;
        std::unique_ptr<BgraImage> picture;
    };
    /// One output frame ready to encode; no picture means the one before.
    struct DrawnFrame {
        std::int64_t index = 0;
        std::unique_ptr<YuvImage> picture;
    };

    void decode();
    void draw(const std::function<void(double)>& progress, const std::stop_token& stop);
    std::int64_t encode(const std::stop_token& stop);

    Parts parts_;
    BoundedQueue<SourceFrame> sourceFrames_;
    BoundedQueue<std::unique_ptr<BgraImage>> freeSourcePictures_;
    BoundedQueue<DrawnFrame> drawnFrames_;
    BoundedQueue<std::unique_ptr<YuvImage>> freeDrawnPictures_;
};

}  // namespace tessaloom
