// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "base/WorkerPool.h"
#include "render/CaptionDrawing.h"
#include "render/ChangedArea.h"
#include "render/CompositeStage.h"
#include "render/CursorImage.h"
#include "render/FrameChanges.h"
#include "render/PictureLevels.h"
#include "render/PictureStage.h"
#include "render/Renderer.h"
#include "render/RoundedRectStage.h"
#include "render/TextRasters.h"
#include "render/WebcamStage.h"

namespace tessaloom {

/// Draws frames without a GPU: rows in bands over all cores, each band through all stages while it is in the
/// cache. Running frames allocate nothing.
class CpuRenderer final : public Renderer {
  public:
    /// `threads` draw at once, the caller's among them; `themes` is where cursors are looked for.
    explicit CpuRenderer(int threads = WorkerPool::hardwareParticipants(),
                         std::vector<std::string> themes = cursorThemes());

    void render(const FrameComposer::Frame& frame, const FrameSources& sources, BgraImage& target) override;
    void render(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) override;
    void redraw(const FrameComposer::Frame& frame, const FrameSources& sources, const ShownFrame& shown,
                BgraImage& target) override;
    void redraw(const FrameComposer::Frame& frame, const FrameSources& sources, const ShownFrame& shown,
                YuvImage& target) override;

    void makeCursorTexture(CursorStyle style) override;
    CursorStyle cursorStyle() const override { return cursorStyle_; }
    Size cursorImageSize() const override { return cursor_.size; }
    Point cursorHotspot() const override { return cursor_.hotspot; }

    void loadWallpaper(const std::optional<std::filesystem::path>& file) override;
    void prewarmKeystrokes(std::span<const std::string_view> texts) override;
    void prewarmCaptions(std::span<const std::string_view> lines, const CaptionStyle& style) override;

  private:
    struct Cursor {
        PictureLevels picture;
        Size size;
        Point hotspot;
    };
    /// In pixels.
    struct CanvasExtent {
        int width = 0;
        int height = 0;
    };

    struct PlacedKeystroke {
        const PictureLevels& picture;
        ChipUniforms chip;
    };
    struct PlacedCaption {
        const PictureLevels& line;
        CaptionDrawing drawing;
    };

    Cursor makeCursor(CursorStyle style) const;
    /// Sets `area_` to what redrawing has to draw.
    void findChanges(const FrameComposer::Frame& frame, const FrameSources& sources, const ShownFrame& shown,
                     CanvasExtent canvas);
    FrameLook lookOf(const FrameComposer::Frame& frame, const SourceContents& sources, CanvasExtent canvas);
    // Nothing where the frame shows none.
    std::optional<PlacedKeystroke> placedKeystroke(const FrameComposer::Frame& frame, CanvasExtent canvas);
    std::optional<PlacedCaption> placedCaption(const FrameComposer::Frame& frame, CanvasExtent canvas);
    /// Draws `area_`.
    void draw(const FrameComposer::Frame& frame, const FrameSources& sources, BgraImage& target);
    void draw(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target);
    void prepare(const FrameComposer::Frame& frame, const FrameSources& sources, CanvasExtent canvas);
    void prepareComposite(const CompositeUniforms& uniforms, const SourcePicture& recording);
    void prepareCursor(const std::optional<CursorUniforms>& cursor, CanvasExtent canvas);
    void prepareKeystroke(const FrameComposer::Frame& frame, CanvasExtent canvas);
    void prepareWebcam(const std::optional<WebcamUniforms>& webcam, const FrameSources& sources,
                       CanvasExtent canvas);
    void prepareCaption(const FrameComposer::Frame& frame, CanvasExtent canvas);
    void prepareRoundedRect(RoundedRectStage& stage, const std::optional<RoundedRectUniforms>& uniforms,
                            CanvasExtent canvas);
    void prepareChip(PictureStage& stage, const PictureLevels& raster, const ChipUniforms& chip,
                     CanvasExtent canvas);
    void prepareOverlay(PictureStage& stage, BgraView picture, const PictureStage::Placement& placement,
                        CanvasExtent canvas);
    void growScratch(int pictureWidth, int canvasWidth);
    void drawRow(const FrameComposer::Frame& frame, int y, PixelSpan columns, RowScratch& scratch,
                 std::uint8_t* row) const;

    std::vector<std::string> themes_;
    CursorStyle cursorStyle_ = CursorStyle::system;
    Cursor cursor_;
    TextRasters<PictureLevels> texts_;
    std::optional<std::filesystem::path> wallpaperFile_;
    BgraImage wallpaper_;
    std::uint64_t wallpaperIdentity_ = 1;
    /// Stands in for pictures that are missing.
    BgraImage blank_;

    CompositeStage composite_;
    PictureStage cursorStage_;
    WebcamStage webcam_;
    PictureStage keystrokeStage_;
    RoundedRectStage captionPlate_;
    RoundedRectStage captionUnderline_;
    PictureStage captionText_;
    PictureStage captionWord_;
    ChangedArea area_;
    WorkerPool pool_;
    std::vector<RowScratch> scratch_;
    /// One per participant: a band on its way into a YUV picture.
    std::vector<BgraImage> bands_;
};

}  // namespace tessaloom
