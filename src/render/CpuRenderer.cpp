// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CpuRenderer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <utility>

#include "media/ColorConversion.h"
#include "render/KeystrokeDrawing.h"
#include "render/PictureFile.h"
#include "render/RippleStage.h"

namespace tessaloom {
namespace {

BgraImage blackPixel() {
    BgraImage pixel(1, 1);
    constexpr std::array<std::uint8_t, 4> opaqueBlack{0, 0, 0, 255};
    std::memcpy(pixel.row(0), opaqueBlack.data(), opaqueBlack.size());
    return pixel;
}

}  // namespace

CpuRenderer::CpuRenderer(int threads, std::vector<std::string> themes)
    : themes_(std::move(themes)),
      cursor_(makeCursor(cursorStyle_)),
      texts_([](BgraImage raster) { return PictureLevels(std::move(raster)); }),
      blank_(blackPixel()),
      pool_(threads),
      scratch_(static_cast<std::size_t>(pool_.participants())),
      bands_(static_cast<std::size_t>(pool_.participants())) {}

void CpuRenderer::render(const FrameComposer::Frame& frame, const FrameSources& sources, BgraImage& target) {
    area_.clear(target.width(), target.height());
    area_.addAll();
    draw(frame, sources, target);
}

void CpuRenderer::render(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) {
    area_.clear(target.width(), target.height());
    area_.addAll();
    draw(frame, sources, target);
}

void CpuRenderer::redraw(const FrameComposer::Frame& frame, const FrameSources& sources,
                         const ShownFrame& shown, BgraImage& target) {
    findChanges(frame, sources, shown, {target.width(), target.height()});
    if (!area_.empty()) draw(frame, sources, target);
}

void CpuRenderer::redraw(const FrameComposer::Frame& frame, const FrameSources& sources,
                         const ShownFrame& shown, YuvImage& target) {
    findChanges(frame, sources, shown, {target.width(), target.height()});
    if (!area_.empty()) draw(frame, sources, target);
}

void CpuRenderer::findChanges(const FrameComposer::Frame& frame, const FrameSources& sources,
                              const ShownFrame& shown, CanvasExtent canvas) {
    area_.clear(canvas.width, canvas.height);
    addChanges(lookOf(shown.frame, shown.sources, canvas), lookOf(frame, contentsOf(sources), canvas), area_);
}

FrameLook CpuRenderer::lookOf(const FrameComposer::Frame& frame, const SourceContents& sources,
                              CanvasExtent canvas) {
    FrameLook look{frame, sources, std::nullopt, std::nullopt};
    if (const auto placed = placedKeystroke(frame, canvas)) look.keystroke = toRect(placed->chip.rect);
    if (const auto placed = placedCaption(frame, canvas)) look.caption = extentOf(placed->drawing);
    return look;
}

void CpuRenderer::draw(const FrameComposer::Frame& frame, const FrameSources& sources, BgraImage& target) {
    prepare(frame, sources, {target.width(), target.height()});
    const auto drawBand = [&](int first, int last, int participant) {
        const PixelSpan columns = area_.columns(first);
        if (columns.empty()) return;
        RowScratch& scratch = scratch_[static_cast<std::size_t>(participant)];
        for (int y = first; y < last; ++y)
            drawRow(frame, y, columns, scratch, target.row(y));
    };
    pool_.forEachBand(target.height(), ChangedArea::bandHeight, std::cref(drawBand));
}

void CpuRenderer::draw(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) {
    prepare(frame, sources, {target.width(), target.height()});
    for (BgraImage& band : bands_) {
        if (band.width() != target.width()) band = BgraImage(target.width(), ChangedArea::bandHeight);
    }
    const auto drawBand = [&](int first, int last, int participant) {
        const PixelSpan columns = area_.columns(first);
        if (columns.empty()) return;
        RowScratch& scratch = scratch_[static_cast<std::size_t>(participant)];
        BgraImage& band = bands_[static_cast<std::size_t>(participant)];
        for (int y = first; y < last; ++y)
            drawRow(frame, y, columns, scratch, band.row(y - first));
        const std::uint8_t* corner = band.row(0) + static_cast<std::ptrdiff_t>(columns.first) * 4;
        bgraToYuv({corner, columns.length(), last - first, band.stride()}, target, columns.first, first);
    };
    pool_.forEachBand(target.height(), ChangedArea::bandHeight, std::cref(drawBand));
}

void CpuRenderer::prepare(const FrameComposer::Frame& frame, const FrameSources& sources,
                          CanvasExtent canvas) {
    prepareComposite(frame.uniforms, sources.recording);
    prepareCursor(frame.cursor, canvas);
    prepareWebcam(frame.webcam, sources, canvas);
    prepareKeystroke(frame, canvas);
    prepareCaption(frame, canvas);
}

void CpuRenderer::drawRow(const FrameComposer::Frame& frame, int y, PixelSpan columns, RowScratch& scratch,
                          std::uint8_t* row) const {
    composite_.drawRow(y, columns, scratch, row);
    for (const RippleUniforms& ripple : frame.ripples)
        drawRippleRow(ripple, y, columns, static_cast<int>(frame.uniforms.a.x), row);
    cursorStage_.drawRow(y, columns, scratch, row);
    webcam_.drawRow(y, columns, scratch, row);
    keystrokeStage_.drawRow(y, columns, scratch, row);
    captionPlate_.drawRow(y, columns, row);
    captionUnderline_.drawRow(y, columns, row);
    captionText_.drawRow(y, columns, scratch, row);
    captionWord_.drawRow(y, columns, scratch, row);
}

void CpuRenderer::prepareComposite(const CompositeUniforms& uniforms, const SourcePicture& recording) {
    Backdrop::Pictures pictures{recording.pixels, recording.identity, wallpaper_.view(), wallpaperIdentity_};
    if (pictures.recording.empty()) pictures.recording = blank_.view();
    if (pictures.wallpaper.empty()) pictures.wallpaper = blank_.view();
    growScratch(std::max(pictures.recording.width, pictures.wallpaper.width), static_cast<int>(uniforms.a.x));
    composite_.prepare(uniforms, pictures, pool_, scratch_);
}

void CpuRenderer::prepareCursor(const std::optional<CursorUniforms>& cursor, CanvasExtent canvas) {
    cursorStage_.clear();
    if (!cursor) return;
    const RoundedBox content{toRect(cursor->content), cursor->meta.z};
    prepareOverlay(cursorStage_, cursor_.picture.forWidth(cursor->rect.z),
                   {toRect(cursor->rect), cursor->meta.w, content}, canvas);
}

void CpuRenderer::prepareWebcam(const std::optional<WebcamUniforms>& webcam, const FrameSources& sources,
                                CanvasExtent canvas) {
    webcam_.clear();
    if (!webcam || sources.camera.pixels.empty()) return;
    growScratch(std::max(sources.camera.pixels.width + 2, sources.matte.pixels.width), canvas.width);
    webcam_.prepare(*webcam, sources.camera, sources.matte, canvas.width, canvas.height, pool_);
}

std::optional<CpuRenderer::PlacedKeystroke> CpuRenderer::placedKeystroke(const FrameComposer::Frame& frame,
                                                                         CanvasExtent canvas) {
    const auto& chip = frame.keystroke;
    if (!chip || chip->alpha <= leastChipAlpha) return std::nullopt;
    const auto* raster = texts_.keystroke(chip->text);
    if (raster == nullptr) return std::nullopt;
    return PlacedKeystroke{raster->picture,
                           keystrokeDrawing(*chip, raster->pixels, static_cast<float>(canvas.width),
                                            static_cast<float>(canvas.height))};
}

void CpuRenderer::prepareKeystroke(const FrameComposer::Frame& frame, CanvasExtent canvas) {
    keystrokeStage_.clear();
    if (const auto placed = placedKeystroke(frame, canvas))
        prepareChip(keystrokeStage_, placed->picture, placed->chip, canvas);
}

std::optional<CpuRenderer::PlacedCaption> CpuRenderer::placedCaption(const FrameComposer::Frame& frame,
                                                                     CanvasExtent canvas) {
    if (!frame.caption || frame.caption->alpha <= leastChipAlpha) return std::nullopt;
    const CaptionChip& chip = *frame.caption;
    const auto* line = texts_.captionLine(chip.text, chip.colorHex, chip.uppercase);
    if (line == nullptr) return std::nullopt;
    return PlacedCaption{line->picture,
                         captionDrawing(chip, line->layout, static_cast<float>(canvas.width),
                                        static_cast<float>(canvas.height), frame.webcamKeepOut)};
}

void CpuRenderer::prepareCaption(const FrameComposer::Frame& frame, CanvasExtent canvas) {
    captionPlate_.clear();
    captionUnderline_.clear();
    captionText_.clear();
    captionWord_.clear();
    const auto placed = placedCaption(frame, canvas);
    if (!placed) return;
    const CaptionDrawing& drawing = placed->drawing;
    prepareRoundedRect(captionPlate_, drawing.plate, canvas);
    prepareRoundedRect(captionUnderline_, drawing.underline, canvas);
    prepareChip(captionText_, placed->line, drawing.text, canvas);
    if (!drawing.boxedWord) return;
    const auto* word =
        texts_.wordChip(drawing.boxedWord->word, frame.caption->highlightHex, frame.caption->uppercase);
    if (word != nullptr) prepareChip(captionWord_, word->picture, drawing.boxedWord->chip, canvas);
}

void CpuRenderer::prepareRoundedRect(RoundedRectStage& stage,
                                     const std::optional<RoundedRectUniforms>& uniforms,
                                     CanvasExtent canvas) {
    if (uniforms) stage.prepare(*uniforms, canvas.width, canvas.height);
}

void CpuRenderer::prepareChip(PictureStage& stage, const PictureLevels& raster, const ChipUniforms& chip,
                              CanvasExtent canvas) {
    prepareOverlay(stage, raster.forWidth(chip.rect.z), {toRect(chip.rect), chip.meta.z, {}}, canvas);
}

void CpuRenderer::prepareOverlay(PictureStage& stage, BgraView picture,
                                 const PictureStage::Placement& placement, CanvasExtent canvas) {
    growScratch(picture.width, canvas.width);
    stage.prepare(picture, placement, canvas.width, canvas.height);
}

void CpuRenderer::growScratch(int pictureWidth, int canvasWidth) {
    for (RowScratch& scratch : scratch_)
        scratch.grow(pictureWidth, canvasWidth);
}

void CpuRenderer::makeCursorTexture(CursorStyle style) {
    cursor_ = makeCursor(style);
    cursorStyle_ = style;
}

CpuRenderer::Cursor CpuRenderer::makeCursor(CursorStyle style) const {
    CursorImage image = makeCursorImage(style, themes_);
    return {PictureLevels(std::move(image.pixels)), image.size, image.hotspot};
}

void CpuRenderer::loadWallpaper(const std::optional<std::filesystem::path>& file) {
    if (file == wallpaperFile_) return;
    wallpaperFile_ = file;
    wallpaper_ = file ? readPictureFile(*file).value_or(BgraImage()) : BgraImage();
    ++wallpaperIdentity_;
}

void CpuRenderer::prewarmKeystrokes(std::span<const std::string_view> texts) {
    for (const std::string_view text : texts)
        texts_.keystroke(text);
}

void CpuRenderer::prewarmCaptions(std::span<const std::string_view> lines, const CaptionStyle& style) {
    texts_.prewarmCaptions(lines, style);
}

}  // namespace tessaloom
