// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/FramePipeline.h"

#include <future>
#include <tuple>
#include <utility>

#include "export/Exporter.h"
#include "render/SubpixelGrid.h"

namespace tessaloom {
namespace {

/// Pictures between two threads: one with each and one on the way.
constexpr std::size_t pictureCount = 3;
/// Frames on the way; those without a picture cost nothing, and room for them lets a still scene run ahead.
constexpr std::size_t frameCount = 16;

/// Closes queues when its stage ends, however it ends, so that no other stage waits for it.
template <typename... Queues>
class CloseAtEnd {
  public:
    explicit CloseAtEnd(Queues&... queues) : queues_(queues...) {}
    ~CloseAtEnd() {
        std::apply([](Queues&... queue) { (queue.close(), ...); }, queues_);
    }
    CloseAtEnd(const CloseAtEnd&) = delete;
    CloseAtEnd& operator=(const CloseAtEnd&) = delete;

  private:
    std::tuple<Queues&...> queues_;
};

}  // namespace

FramePipeline::FramePipeline(const Parts& parts)
    : parts_(parts),
      sourceFrames_(frameCount),
      freeSourcePictures_(pictureCount),
      drawnFrames_(frameCount),
      freeDrawnPictures_(pictureCount) {
    for (std::size_t i = 0; i < pictureCount; ++i) {
        freeSourcePictures_.push(std::make_unique<BgraImage>());
        freeDrawnPictures_.push(std::make_unique<YuvImage>(parts.canvas.width, parts.canvas.height));
    }
}

std::int64_t FramePipeline::run(const std::function<void(double)>& progress, const std::stop_token& stop) {
    auto decoding = std::async(std::launch::async, [this] { decode(); });
    auto encoding = std::async(std::launch::async, [this, &stop] { return encode(stop); });
    draw(progress, stop);
    decoding.get();
    const std::int64_t count = encoding.get();
    if (parts_.sound != nullptr) parts_.sound->finish(stop);
    return count;
}

void FramePipeline::decode() {
    const CloseAtEnd close(sourceFrames_, freeSourcePictures_);
    double shownTime = -1;
    for (std::int64_t index = 0; index < parts_.timeline.frameCount(); ++index) {
        SourceFrame frame{.index = index, .time = parts_.timeline.sourceTime(index), .picture = {}};
        const DecodedFrame* held = parts_.recording.frame(frame.time);
        if (held == nullptr) continue;
        if (held->time() != shownTime) {
            frame.picture = freeSourcePictures_.pop().value_or(nullptr);
            if (!frame.picture) return;
            held->toBgra(*frame.picture);
            shownTime = held->time();
        }
        if (!sourceFrames_.push(std::move(frame))) return;
    }
}

void FramePipeline::draw(const std::function<void(double)>& progress, const std::stop_token& stop) {
    const CloseAtEnd close(sourceFrames_, freeSourcePictures_, drawnFrames_, freeDrawnPictures_);
    const auto total = static_cast<double>(parts_.timeline.frameCount());
    const CanvasSize canvas = parts_.canvas;
    auto recording = std::make_unique<BgraImage>();
    std::uint64_t identity = 0;
    std::optional<FrameComposer::Frame> last;
    while (auto source = sourceFrames_.pop()) {
        if (stop.stop_requested()) throw ExportCancelled();
        const bool sourceChanged = source->picture != nullptr;
        if (sourceChanged) {
            freeSourcePictures_.push(std::exchange(recording, std::move(source->picture)));
            ++identity;
        }
        auto composed =
            onSubpixelGrid(parts_.composer.composeFrame(source->time, canvas.width, canvas.height),
                           recording->width(), recording->height());
        DrawnFrame drawn{.index = source->index, .picture = {}};
        if (sourceChanged || last != composed) {
            drawn.picture = freeDrawnPictures_.pop().value_or(nullptr);
            if (!drawn.picture) return;
            parts_.renderer.render(composed, {.recording = {recording->view(), identity}}, *drawn.picture);
            last = std::move(composed);
        }
        if (!drawnFrames_.push(std::move(drawn))) return;
        progress(static_cast<double>(source->index + 1) / total);
    }
}

std::int64_t FramePipeline::encode(const std::stop_token& stop) {
    const CloseAtEnd close(drawnFrames_, freeDrawnPictures_);
    constexpr double duration = 1.0 / 60.0;
    auto picture = std::make_unique<YuvImage>(parts_.canvas.width, parts_.canvas.height);
    std::int64_t count = 0;
    while (auto drawn = drawnFrames_.pop()) {
        if (drawn->picture) freeDrawnPictures_.push(std::exchange(picture, std::move(drawn->picture)));
        const double time = static_cast<double>(drawn->index) / 60.0;
        parts_.writer.appendVideo(*picture, time, duration);
        if (parts_.sound != nullptr) parts_.sound->pumpTo(time + duration, stop);
        ++count;
    }
    return count;
}

}  // namespace tessaloom
