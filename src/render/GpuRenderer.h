// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QThread>
#include <string>
#include <vector>

#include "base/WorkerPool.h"
#include "render/CursorImage.h"
#include "render/Renderer.h"

class QOffscreenSurface;

namespace tessaloom {

class CpuRenderer;
class GpuPainter;
enum class GpuApi;

/// Draws frames on a GPU. Its device has a thread of its own, so that it may be used from any one thread at a
/// time; it is made and destroyed on the main thread. A frame that the device can't draw, because a picture
/// is beyond its limits or the device is gone, is drawn on the CPU instead.
class GpuRenderer final : public Renderer {
  public:
    enum class Accept {
        /// Only where the work is taken off the processor.
        realGpu,
        /// Also a software GPU.
        anyGpu
    };
    struct Options {
        Accept accept = Accept::realGpu;
        /// Where cursors are looked for.
        std::vector<std::string> themes = cursorThemes();
        /// Where the compiled shaders are.
        std::string shaderFolder = ":/tessaloom/shaders";
    };

    /// Null when there is no such device.
    static std::unique_ptr<GpuRenderer> open(GpuApi api, const Options& options);
    ~GpuRenderer() override;
    GpuRenderer(const GpuRenderer&) = delete;
    GpuRenderer& operator=(const GpuRenderer&) = delete;

    void render(const FrameComposer::Frame& frame, const FrameSources& sources, BgraImage& target) override;
    void render(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) override;

    void makeCursorTexture(CursorStyle style) override;
    CursorStyle cursorStyle() const override { return cursorStyle_; }
    Size cursorImageSize() const override { return cursorImageSize_; }
    Point cursorHotspot() const override { return cursorHotspot_; }

    void loadWallpaper(const std::optional<std::filesystem::path>& file) override;
    void prewarmKeystrokes(std::span<const std::string_view> texts) override;
    void prewarmCaptions(std::span<const std::string_view> lines, const CaptionStyle& style) override;

    /// The device, as its driver calls it.
    const std::string& deviceName() const { return deviceName_; }
    /// Why some of the stages are not drawn.
    const std::optional<std::string>& pipelineError() const { return pipelineError_; }
    /// So far; running frames must not add to it.
    int textureAllocations() const;

  private:
    explicit GpuRenderer(const Options& options);
    bool openDevice(GpuApi api, const Options& options);
    template <class Task>
    void onDeviceThread(Task task) const;
    bool draw(const FrameComposer::Frame& frame, const FrameSources& sources, int width, int height);
    CpuRenderer& standIn();

    std::vector<std::string> themes_;
    /// Destroyed after the device, on the main thread.
    std::unique_ptr<QOffscreenSurface> surface_;
    QThread thread_;
    /// Lives on the device's thread and runs its tasks.
    std::unique_ptr<QObject> taskRunner_;
    std::unique_ptr<GpuPainter> painter_;
    std::string deviceName_;
    std::optional<std::string> pipelineError_;
    CursorStyle cursorStyle_ = CursorStyle::system;
    Size cursorImageSize_;
    Point cursorHotspot_;
    std::optional<std::filesystem::path> wallpaperFile_;
    WorkerPool pool_;
    /// One per participant: a band on its way into a YUV picture.
    std::vector<BgraImage> bands_;
    std::unique_ptr<CpuRenderer> standIn_;
};

}  // namespace tessaloom
