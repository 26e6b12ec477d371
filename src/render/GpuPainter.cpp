// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuPainter.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/Log.h"
#include "render/CaptionDrawing.h"
#include "render/KeystrokeDrawing.h"

namespace tessaloom {
namespace {

/// Less does not blur the camera.
constexpr float leastBlur = 0.001F;
/// Of the camera's width, at full blur.
constexpr double fullBlurSigma = 0.035;

/// Shows as black.
BgraView blackPixel() {
    static constexpr std::array<std::uint8_t, 4> opaqueBlack{0, 0, 0, 255};
    return {opaqueBlack.data(), 1, 1, 4};
}

BgraView orBlack(BgraView picture) {
    return picture.empty() ? blackPixel() : picture;
}

}  // namespace

GpuPainter::GpuPainter(std::unique_ptr<GpuDevice> device, const QString& shaderFolder)
    : device_(std::move(device)),
      inputs_(*device_),
      canvas_(*device_, QRhiTexture::RGBA8),
      recording_(*device_, QRhiTexture::BGRA8),
      wallpaper_(*device_, QRhiTexture::BGRA8),
      camera_(*device_, QRhiTexture::BGRA8),
      matte_(*device_, QRhiTexture::BGRA8),
      stages_(*device_, inputs_, *canvas_.pass(), shaderFolder, recording_.texture()),
      pipelineError_(stages_.pipelineError()),
      noTextures_(inputs_.bind({})),
      compositeTextures_(inputs_.bind(std::array{recording_.texture(), wallpaper_.texture()})),
      texts_([this](BgraImage raster) { return makePicture(std::move(raster)); }) {
    if (!pipelineError_) buildBlur(shaderFolder);
    QRhiTexture* const camera = camera_.texture();
    QRhiTexture* const blurred = blur_ ? blur_->result().texture() : camera;
    webcamTextures_.push_back(inputs_.bind(std::array{camera, camera, camera}));
    webcamTextures_.push_back(inputs_.bind(std::array{camera, matte_.texture(), camera}));
    webcamTextures_.push_back(inputs_.bind(std::array{camera, matte_.texture(), blurred}));
    wallpaper_.uploadCopy(blackPixel(), uploads());
}

void GpuPainter::buildBlur(const QString& shaderFolder) {
    try {
        blur_.emplace(*device_, inputs_, shaderFolder, camera_);
    } catch (const GpuPipeline::Failure& failure) {
        pipelineError_ = failure.what();
        qCWarning(Log::renderer, "Failed to build pipeline: %s", failure.what());
    }
}

bool GpuPainter::draw(const FrameComposer::Frame& frame, const FrameSources& sources, QSize canvas) {
    draws_.clear();
    inputs_.clear();
    blursNow_ = false;
    const bool hasComposite = stages_.pipeline(GpuStage::composite) != nullptr;
    const bool drawn = canvas_.resize(canvas) && (!hasComposite || prepare(frame, sources)) &&
                       inputs_.upload(uploads()) && submit();
    // The pictures are here no longer than this call, and count as uploaded from now on.
    if (!drawn) uploadNow();
    return drawn;
}

bool GpuPainter::prepare(const FrameComposer::Frame& frame, const FrameSources& sources) {
    if (!recording_.upload(orBlack(sources.recording.pixels), sources.recording.identity, uploads())) {
        return false;
    }
    add(GpuStage::composite, *compositeTextures_, frame.uniforms);
    for (const RippleUniforms& ripple : frame.ripples)
        add(GpuStage::ripple, *noTextures_, ripple);
    if (frame.cursor && cursor_) {
        add(GpuStage::cursor, cursor_->forWidth(frame.cursor->rect.z), *frame.cursor);
    }
    if (frame.webcam && !prepareWebcam(*frame.webcam, sources)) return false;
    const Float4& canvas = frame.uniforms.a;
    if (frame.keystroke && frame.keystroke->alpha > leastChipAlpha)
        prepareKeystroke(*frame.keystroke, canvas);
    if (frame.caption && frame.caption->alpha > leastChipAlpha) {
        prepareCaption(*frame.caption, canvas, frame.webcamKeepOut);
    }
    return true;
}

bool GpuPainter::prepareWebcam(const WebcamUniforms& webcam, const FrameSources& sources) {
    const SourcePicture& camera = sources.camera;
    const SourcePicture& matte = sources.matte;
    if (camera.pixels.empty()) return true;
    if (!camera_.upload(camera.pixels, camera.identity, uploads())) return false;
    auto input = WebcamInput::cameraOnly;
    if (!matte.pixels.empty()) {
        input = WebcamInput::matte;
        if (!matte_.upload(matte.pixels, matte.identity, uploads())) return false;
        if (blur_ && webcam.blur.x > leastBlur) {
            input = WebcamInput::matteAndBlur;
            if (!prepareBlur(camera, webcam.blur.x)) return false;
        }
    }
    add(GpuStage::webcam, *webcamTextures_[static_cast<std::size_t>(input)], webcam);
    return true;
}

bool GpuPainter::prepareBlur(const SourcePicture& camera, double amount) {
    const BlurState wanted{camera.identity, std::max(amount * camera.pixels.width * fullBlurSigma, 1.0)};
    blursNow_ = camera.identity == 0 || wanted != blurState_;
    if (!blursNow_) return true;
    blurState_ = {};
    if (!blur_->prepare(wanted.sigma)) return false;
    blurState_ = wanted;
    return true;
}

void GpuPainter::prepareKeystroke(const KeystrokeChip& chip, const Float4& canvas) {
    const auto* raster = texts_.keystroke(chip.text);
    if (raster != nullptr) {
        addChip(raster->picture, keystrokeDrawing(chip, raster->pixels, canvas.x, canvas.y));
    }
}

void GpuPainter::prepareCaption(const CaptionChip& chip, const Float4& canvas,
                                const std::optional<Rect>& keepOut) {
    const auto* line = texts_.captionLine(chip.text, chip.colorHex, chip.uppercase);
    if (line == nullptr) return;
    const CaptionDrawing drawing = captionDrawing(chip, line->layout, canvas.x, canvas.y, keepOut);
    for (const auto& box : {drawing.plate, drawing.underline}) {
        if (box) add(GpuStage::roundedRect, *noTextures_, *box);
    }
    addChip(line->picture, drawing.text);
    if (!drawing.boxedWord) return;
    const auto* word = texts_.wordChip(drawing.boxedWord->word, chip.highlightHex, chip.uppercase);
    if (word != nullptr) addChip(word->picture, drawing.boxedWord->chip);
}

void GpuPainter::addChip(const GpuPicture& raster, const ChipUniforms& record) {
    add(GpuStage::chip, raster.forWidth(record.rect.z), record);
}

template <class Record>
void GpuPainter::add(GpuStage stage, QRhiShaderResourceBindings& bindings, const Record& record) {
    if (stages_.pipeline(stage) != nullptr) draws_.push_back({stage, &bindings, inputs_.add(record)});
}

bool GpuPainter::submit() {
    QRhi& rhi = device_->rhi();
    QRhiCommandBuffer* commands = nullptr;
    if (rhi.beginOffscreenFrame(&commands) != QRhi::FrameOpSuccess) return false;
    commands->resourceUpdate(std::exchange(uploads_, nullptr));
    if (blursNow_) blur_->draw(*commands);
    commands->beginPass(canvas_.target(), Qt::black, {1, 0});
    for (const Draw& draw : draws_)
        stages_.pipeline(draw.stage)->draw(*commands, canvas_.size(), *draw.bindings, draw.record);
    QRhiResourceUpdateBatch* const readback = rhi.nextResourceUpdateBatch();
    readback->readBackTexture({canvas_.texture()}, &readback_);
    commands->endPass(readback);
    return rhi.endOffscreenFrame() == QRhi::FrameOpSuccess;
}

void GpuPainter::setCursor(BgraImage image) {
    cursor_ = makePicture(std::move(image));
    uploadNow();
}

void GpuPainter::setWallpaper(std::optional<BgraImage> image) {
    const PictureLevels levels(image ? std::move(*image) : BgraImage());
    const auto fits = [this](const BgraImage& level) {
        return !level.empty() && std::max(level.width(), level.height()) <= device_->largestTextureSide();
    };
    const auto level = std::ranges::find_if(levels.levels(), fits);
    wallpaper_.uploadCopy(level == levels.levels().end() ? blackPixel() : level->view(), uploads());
    uploadNow();
}

void GpuPainter::prewarmKeystrokes(std::span<const std::string_view> texts) {
    for (const std::string_view text : texts) {
        texts_.keystroke(text);
        uploadNow();
    }
}

void GpuPainter::prewarmCaptions(std::span<const std::string_view> lines, const CaptionStyle& style) {
    // One by one, since what waits to be uploaded takes memory twice.
    for (const std::string_view& line : lines) {
        texts_.prewarmCaptions({&line, 1}, style);
        uploadNow();
    }
}

std::optional<GpuPicture> GpuPainter::makePicture(BgraImage pixels) {
    GpuPicture picture(*device_, inputs_, PictureLevels(std::move(pixels)), uploads());
    if (picture.empty()) return std::nullopt;
    return picture;
}

QRhiResourceUpdateBatch& GpuPainter::uploads() {
    if (uploads_ == nullptr) uploads_ = device_->rhi().nextResourceUpdateBatch();
    return *uploads_;
}

void GpuPainter::uploadNow() {
    QRhiResourceUpdateBatch* const waiting = std::exchange(uploads_, nullptr);
    if (waiting == nullptr) return;
    QRhiCommandBuffer* commands = nullptr;
    if (device_->rhi().beginOffscreenFrame(&commands) != QRhi::FrameOpSuccess) return waiting->release();
    commands->resourceUpdate(waiting);
    device_->rhi().endOffscreenFrame();
}

}  // namespace tessaloom
