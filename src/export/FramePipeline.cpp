// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/FramePipeline.h"

#include <future>
#include <utility>

#include "export/Exporter.h"
#include "render/SubpixelGrid.h"

namespace tessaloom {
namespace {

/// Pictures between two threads: one with each and one on the way.
constexpr std::size_t pictureCount = 3;
/// Frames on the way; those without a picture cost nothing, and room for them lets a still scene run ahead.
constexpr std::size_t frameCount = 16;

/// Calls what a stage leaves behind when it ends, however it ends.
template <typename Action>
class AtEnd {
  public:
    explicit AtEnd(Action action) : action_(std::move(action)) {}
    ~AtEnd() { action_(); }
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;

  private:
    Action action_;
};

HeldFrameReader* readerOf(std::optional<HeldFrameReader>& movie) {
    return movie ? &*movie : nullptr;
}

bool viewMoves(const FrameComposer::Frame& before, const FrameComposer::Frame& after) {
    return before.uniforms.b != after.uniforms.b || before.uniforms.c != after.uniforms.c;
}

}  // namespace

template <typename Picture>
FramePipeline<Picture>::FramePipeline(const Parts& parts)
    : parts_(parts),
      recording_(&parts.movies.recording, pictureCount),
      camera_(readerOf(parts.movies.camera), pictureCount),
      matte_(readerOf(parts.movies.matte), pictureCount),
      sourceFrames_(frameCount),
      drawnFrames_(frameCount),
      freeTargets_(pictureCount) {
    // The encoder has the first one.
    for (std::size_t i = 1; i < pictureCount; ++i)
        freeTargets_.push(makeTarget());
}

template <typename Picture>
std::int64_t FramePipeline<Picture>::run(const std::function<void(double)>& progress,
                                         const std::stop_token& stop) {
    // Each stage may be waiting for another one, or far from handing anything on.
    const std::stop_callback wake(stop, [this] { closeAll(); });
    auto decoding = std::async(std::launch::async, [this, &stop] { decode(stop); });
    auto encoding = std::async(std::launch::async, [this] { return encode(); });
    draw(progress, stop);
    if (stop.stop_requested()) throw ExportCancelled();
    decoding.get();
    return encoding.get();
}

template <typename Picture>
void FramePipeline<Picture>::decode(const std::stop_token& stop) {
    const AtEnd close([this] { sourceFrames_.close(); });
    const OutputTimeline& timeline = parts_.timeline;
    for (std::int64_t index = 0; index < timeline.frameCount(); ++index) {
        SourceFrame frame{
            .index = index, .time = timeline.sourceTime(index), .recording = {}, .camera = {}, .matte = {}};
        if (!recording_.read(frame.time, frame.recording, stop)) return;
        if (!recording_.hasBegun()) continue;
        const double cameraTime = frame.time - parts_.movies.cameraOffset;
        if (!camera_.read(cameraTime, frame.camera, stop)) return;
        if (!matte_.read(cameraTime, frame.matte, stop)) return;
        if (!sourceFrames_.push(std::move(frame))) return;
    }
}

template <typename Picture>
void FramePipeline<Picture>::draw(const std::function<void(double)>& progress, const std::stop_token& stop) {
    const AtEnd close([this] { closeAll(); });
    const auto total = static_cast<double>(parts_.timeline.frameCount());
    std::optional<FrameComposer::Frame> last;
    while (auto source = sourceFrames_.pop()) {
        if (stop.stop_requested()) throw ExportCancelled();
        const Changes changes = show(*source);
        auto composed = compose(source->time);
        DrawnFrame drawn{.index = source->index, .change = FrameChange::none, .target = {}};
        if (changes.recording || (changes.camera && composed.webcam) || last != composed) {
            drawn.change = last && viewMoves(*last, composed) ? FrameChange::view : FrameChange::content;
            drawn.target = freeTargets_.pop().value_or(nullptr);
            if (!drawn.target) return;
            drawInto(*drawn.target, composed);
            last = std::move(composed);
        }
        if (!drawnFrames_.push(std::move(drawn))) return;
        progress(static_cast<double>(source->index + 1) / total);
    }
}

template <typename Picture>
std::int64_t FramePipeline<Picture>::encode() {
    const AtEnd close([this] {
        drawnFrames_.close();
        freeTargets_.close();
    });
    auto target = makeTarget();
    std::int64_t count = 0;
    while (auto drawn = drawnFrames_.pop()) {
        if (drawn->target) freeTargets_.push(std::exchange(target, std::move(drawn->target)));
        parts_.sink.append(drawn->index, target->picture, drawn->change);
        ++count;
    }
    return count;
}

template <typename Picture>
auto FramePipeline<Picture>::show(SourceFrame& source) -> Changes {
    const bool recording = recording_.show(std::move(source.recording));
    const bool camera = camera_.show(std::move(source.camera));
    const bool matte = matte_.show(std::move(source.matte));
    return {.recording = recording, .camera = camera || matte};
}

template <typename Picture>
FrameSources FramePipeline<Picture>::shownSources() const {
    return {.recording = recording_.shown(), .camera = camera_.shown(), .matte = matte_.shown()};
}

template <typename Picture>
FrameComposer::Frame FramePipeline<Picture>::compose(double time) const {
    const BgraView recording = recording_.shown().pixels;
    return onSubpixelGrid(parts_.composer.composeFrame(time, parts_.canvas.width, parts_.canvas.height),
                          recording.width, recording.height);
}

template <typename Picture>
void FramePipeline<Picture>::drawInto(Target& target, const FrameComposer::Frame& frame) const {
    const FrameSources sources = shownSources();
    parts_.renderer.redraw(frame, sources, target.shown, target.picture);
    target.shown.frame = frame;
    target.shown.sources = contentsOf(sources);
}

template <typename Picture>
auto FramePipeline<Picture>::makeTarget() const -> std::unique_ptr<Target> {
    return std::make_unique<Target>(Target{.picture = Picture(parts_.canvas.width, parts_.canvas.height)});
}

template <typename Picture>
void FramePipeline<Picture>::closeAll() {
    sourceFrames_.close();
    recording_.close();
    camera_.close();
    matte_.close();
    drawnFrames_.close();
    freeTargets_.close();
}

template class FramePipeline<YuvImage>;
template class FramePipeline<BgraImage>;

}  // namespace tessaloom
