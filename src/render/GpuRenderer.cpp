// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuRenderer.h"

#include <QOffscreenSurface>
#include <cstring>
#include <functional>
#include <utility>

#include "base/Log.h"
#include "media/ColorConversion.h"
#include "render/CpuRenderer.h"
#include "render/GpuPainter.h"
#include "render/PictureFile.h"

namespace tessaloom {
namespace {

/// Even, as a YUV picture needs it.
constexpr int bandHeight = 16;

// Red first to blue first, opaque.
void swapRedAndBlue(const std::uint8_t* rgba, std::uint8_t* bgra, int pixels) {
    for (std::ptrdiff_t i = 0; i < pixels; ++i) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, rgba + 4 * i, sizeof pixel);
        pixel = 0xFF000000U | ((pixel & 0xFFU) << 16) | (pixel & 0xFF00U) | ((pixel >> 16) & 0xFFU);
        std::memcpy(bgra + 4 * i, &pixel, sizeof pixel);
    }
}

}  // namespace

std::unique_ptr<GpuRenderer> GpuRenderer::open(GpuApi api, const Options& options) {
    std::unique_ptr<GpuRenderer> renderer(new GpuRenderer(options));
    if (!renderer->openDevice(api, options)) return nullptr;
    renderer->makeCursorTexture(CursorStyle::system);
    return renderer;
}

GpuRenderer::GpuRenderer(const Options& options)
    : themes_(options.themes),
      taskRunner_(std::make_unique<QObject>()),
      bands_(static_cast<std::size_t>(pool_.participants())) {
    thread_.setObjectName("gpu");
    taskRunner_->moveToThread(&thread_);
    thread_.start();
}

GpuRenderer::~GpuRenderer() {
    onDeviceThread([this] { painter_.reset(); });
    thread_.quit();
    thread_.wait();
}

bool GpuRenderer::openDevice(GpuApi api, const Options& options) {
    if (api == GpuApi::openGl) surface_ = GpuDevice::makeOpenGlSurface();
    onDeviceThread([&] {
        auto device = surface_ ? GpuDevice::openOpenGl(*surface_) : GpuDevice::openVulkan();
        if (!device || (device->isSoftware() && options.accept == Accept::realGpu)) return;
        deviceName_ = device->name();
        painter_ =
            std::make_unique<GpuPainter>(std::move(device), QString::fromStdString(options.shaderFolder));
        pipelineError_ = painter_->pipelineError();
    });
    return painter_ != nullptr;
}

template <class Task>
void GpuRenderer::onDeviceThread(Task task) const {
    QMetaObject::invokeMethod(taskRunner_.get(), std::move(task), Qt::BlockingQueuedConnection);
}

bool GpuRenderer::draw(const FrameComposer::Frame& frame, const FrameSources& sources, int width,
                       int height) {
    bool drawn = false;
    onDeviceThread([&] { drawn = painter_->draw(frame, sources, {width, height}); });
    return drawn;
}

void GpuRenderer::render(const FrameComposer::Frame& frame, const FrameSources& sources, BgraImage& target) {
    if (!draw(frame, sources, target.width(), target.height())) {
        return standIn().render(frame, sources, target);
    }
    const auto copyBand = [&](int first, int last, int) {
        for (int y = first; y < last; ++y)
            swapRedAndBlue(painter_->row(y), target.row(y), target.width());
    };
    pool_.forEachBand(target.height(), bandHeight, std::cref(copyBand));
}

void GpuRenderer::render(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) {
    if (!draw(frame, sources, target.width(), target.height())) {
        return standIn().render(frame, sources, target);
    }
    for (BgraImage& band : bands_) {
        if (band.width() != target.width()) band = BgraImage(target.width(), bandHeight);
    }
    const auto convertBand = [&](int first, int last, int participant) {
        BgraImage& band = bands_[static_cast<std::size_t>(participant)];
        for (int y = first; y < last; ++y)
            swapRedAndBlue(painter_->row(y), band.row(y - first), band.width());
        bgraToYuv({band.row(0), band.width(), last - first, band.stride()}, target, 0, first);
    };
    pool_.forEachBand(target.height(), bandHeight, std::cref(convertBand));
}

CpuRenderer& GpuRenderer::standIn() {
    if (!standIn_) {
        qCWarning(Log::renderer, "A picture is too large for %s, or the device is gone: drawing on the CPU",
                  deviceName_.c_str());
        standIn_ = std::make_unique<CpuRenderer>(WorkerPool::hardwareParticipants(), themes_);
        standIn_->makeCursorTexture(cursorStyle_);
        standIn_->loadWallpaper(wallpaperFile_);
    }
    return *standIn_;
}

void GpuRenderer::makeCursorTexture(CursorStyle style) {
    CursorImage image = makeCursorImage(style, themes_);
    cursorStyle_ = style;
    cursorImageSize_ = image.size;
    cursorHotspot_ = image.hotspot;
    onDeviceThread([&] { painter_->setCursor(std::move(image.pixels)); });
    if (standIn_) standIn_->makeCursorTexture(style);
}

void GpuRenderer::loadWallpaper(const std::optional<std::filesystem::path>& file) {
    if (file == wallpaperFile_) return;
    wallpaperFile_ = file;
    auto picture = file ? readPictureFile(*file) : std::nullopt;
    onDeviceThread([&] { painter_->setWallpaper(std::move(picture)); });
    if (standIn_) standIn_->loadWallpaper(file);
}

void GpuRenderer::prewarmKeystrokes(std::span<const std::string_view> texts) {
    onDeviceThread([&] { painter_->prewarmKeystrokes(texts); });
}

void GpuRenderer::prewarmCaptions(std::span<const std::string_view> lines, const CaptionStyle& style) {
    onDeviceThread([&] { painter_->prewarmCaptions(lines, style); });
}

int GpuRenderer::textureAllocations() const {
    int count = 0;
    onDeviceThread([&] { count = painter_->device().textureAllocations(); });
    return count;
}

}  // namespace tessaloom
