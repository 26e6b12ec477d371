// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "render/GpuGaussianBlur.h"
#include "render/GpuPicture.h"
#include "render/GpuStages.h"
#include "render/Renderer.h"
#include "render/TextRasters.h"

namespace tessaloom {

/// Draws frames on a device and reads them back: everything that lives there. Belongs to the device's thread.
/// Once it has drawn a frame of a kind, the next one allocates no textures.
class GpuPainter {
  public:
    GpuPainter(std::unique_ptr<GpuDevice> device, const QString& shaderFolder);

    GpuDevice& device() { return *device_; }
    /// Why some of the stages are not drawn.
    const std::optional<std::string>& pipelineError() const { return pipelineError_; }

    /// False when the canvas or a picture is beyond the device's limits, or the device is gone.
    bool draw(const FrameComposer::Frame& frame, const FrameSources& sources, QSize canvas);
    /// A row of the drawn frame: red, green, blue, alpha. Valid until the next `draw`; callable from any
    /// thread until then.
    const std::uint8_t* row(int y) const {
        const char* bytes = readback_.data.constData();
        return reinterpret_cast<const std::uint8_t*>(bytes) + qsizetype{y} * readback_.pixelSize.width() * 4;
    }

    /// Premultiplied.
    void setCursor(BgraImage image);
    /// Shown as large as the device can take it; nothing shows black.
    void setWallpaper(std::optional<BgraImage> image);
    void prewarmKeystrokes(std::span<const std::string_view> texts);
    void prewarmCaptions(std::span<const std::string_view> lines, const CaptionStyle& style);

  private:
    struct Draw {
        GpuStage stage;
        QRhiShaderResourceBindings* bindings;
        quint32 record;
    };
    /// What the camera's blur was last made of.
    struct BlurState {
        std::uint64_t identity = 0;
        double sigma = 0;

        bool operator==(const BlurState&) const = default;
    };
    /// What a bubble reads beside the camera.
    enum class WebcamInput { cameraOnly, matte, matteAndBlur };

    void buildBlur(const QString& shaderFolder);
    bool prepare(const FrameComposer::Frame& frame, const FrameSources& sources);
    bool prepareWebcam(const WebcamUniforms& webcam, const FrameSources& sources);
    bool prepareBlur(const SourcePicture& camera, double amount);
    void prepareKeystroke(const KeystrokeChip& chip, const Float4& canvas);
    void prepareCaption(const CaptionChip& chip, const Float4& canvas, const std::optional<Rect>& keepOut);
    void addChip(const GpuPicture& raster, const ChipUniforms& record);
    template <class Record>
    void add(GpuStage stage, QRhiShaderResourceBindings& bindings, const Record& record);
    bool submit();
    std::optional<GpuPicture> makePicture(BgraImage pixels);
    /// What the next frame begins with.
    QRhiResourceUpdateBatch& uploads();
    /// Leaves nothing waiting for the next frame.
    void uploadNow();

    std::unique_ptr<GpuDevice> device_;
    GpuInputs inputs_;
    GpuCanvas canvas_;
    GpuTexture recording_;
    GpuTexture wallpaper_;
    GpuTexture camera_;
    GpuTexture matte_;
    GpuStages stages_;
    std::optional<std::string> pipelineError_;
    std::optional<GpuGaussianBlur> blur_;
    BlurState blurState_;
    bool blursNow_ = false;
    GpuInputs::Bindings noTextures_;
    GpuInputs::Bindings compositeTextures_;
    std::vector<GpuInputs::Bindings> webcamTextures_;
    std::optional<GpuPicture> cursor_;
    TextRasters<GpuPicture> texts_;
    std::vector<Draw> draws_;
    QRhiResourceUpdateBatch* uploads_ = nullptr;
    QRhiReadbackResult readback_;
};

}  // namespace tessaloom
