// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>

#include "export/BoundedQueue.h"
#include "export/CanvasSize.h"
#include "export/FrameSink.h"
#include "export/OutputTimeline.h"
#include "export/SourceTrack.h"
#include "export/TakeMovies.h"
#include "render/FrameComposer.h"
#include "render/Renderer.h"

namespace tessaloom {

/// Carries an export's frames from the recording to its file: decoding, drawing and encoding each have a
/// thread and hand their pictures on through short queues. Buffers come back and are used again. A frame that
/// looks like the one before is neither drawn nor converted, and any other only where it differs from what
/// its buffer shows. `Picture` is what the sink takes: YuvImage
/// or BgraImage.
template <typename Picture>
class FramePipeline {
  public:
    struct Parts {
        TakeMovies& movies;
        const OutputTimeline& timeline;
        const FrameComposer& composer;
        Renderer& renderer;
        CanvasSize canvas;
        /// Called on the encoding thread.
        FrameSink<Picture>& sink;
    };

    explicit FramePipeline(const Parts& parts);

    /// Runs to the end and returns how many frames the sink got; draws on the calling thread. `progress` gets
    /// the finished fraction there. Throws ExportCancelled, and what any stage throws.
    std::int64_t run(const std::function<void(double)>& progress, const std::stop_token& stop);

  private:
    /// One output frame with its sources; no picture means the one before.
    struct SourceFrame {
        std::int64_t index = 0;
        double time = 0;
        std::unique_ptr<BgraImage> recording;
        std::unique_ptr<BgraImage> camera;
        std::unique_ptr<BgraImage> matte;
    };
    /// A picture to draw into, and what it shows already.
    struct Target {
        Picture picture;
        ShownFrame shown{};
    };
    /// One output frame ready to encode; no target where nothing changed.
    struct DrawnFrame {
        std::int64_t index = 0;
        FrameChange change = FrameChange::none;
        std::unique_ptr<Target> target;
    };

    /// Whether a frame's sources are others than those of the frame before.
    struct Changes {
        bool recording = false;
        bool camera = false;
    };

    void decode(const std::stop_token& stop);
    void draw(const std::function<void(double)>& progress, const std::stop_token& stop);
    std::int64_t encode();

    // Parts of `draw`.
    Changes show(SourceFrame& source);
    FrameSources shownSources() const;
    FrameComposer::Frame compose(double time) const;
    void drawInto(Target& target, const FrameComposer::Frame& frame) const;
    std::unique_ptr<Target> makeTarget() const;
    void closeAll();

    Parts parts_;
    SourceTrack recording_;
    SourceTrack camera_;
    SourceTrack matte_;
    BoundedQueue<SourceFrame> sourceFrames_;
    BoundedQueue<DrawnFrame> drawnFrames_;
    BoundedQueue<std::unique_ptr<Target>> freeTargets_;
};

}  // namespace tessaloom
