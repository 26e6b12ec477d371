// SPDX-License-Identifier: GPL-3.0-or-later
// Milliseconds per frame of the GPU renderer, on OpenGL (where DISPLAY names an X server) and Vulkan: whole
// frames while a zoom runs, and what carrying pictures to the device and back takes of that. Argument: canvas
// width.
#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QGuiApplication>

#include "render/GpuDevice.h"
#include "render/GpuRenderer.h"
#include "render/GpuTexture.h"

namespace tessaloom {
namespace {

BgraImage stripes(int width, int height) {
    BgraImage picture(width, height);
    for (int y = 0; y < height; ++y) {
        for (int i = 0; i < width * 4; ++i)
            picture.row(y)[i] = i % 4 == 3 ? std::uint8_t{255} : static_cast<std::uint8_t>(i * 7 + y * 3);
    }
    return picture;
}

int heightOf(int width) {
    return width * 9 / 16;
}

FrameComposer paddedComposer(const Renderer& renderer) {
    FrameComposer composer;
    composer.recordingAspect = 16.0 / 9.0;
    composer.capturePointWidth = 1920;
    composer.padding = 80;
    composer.cornerRadius = 20;
    composer.shadow = 0.8;
    composer.cursorImageSize = renderer.cursorImageSize();
    composer.cursorHotspot = renderer.cursorHotspot();
    return composer;
}

void drawFrames(benchmark::State& state, GpuApi api, bool newPictures) {
    const auto renderer = GpuRenderer::open(api, {.accept = GpuRenderer::Accept::anyGpu});
    if (!renderer) return state.SkipWithError("no such device");
    state.SetLabel(renderer->deviceName());
    const int width = static_cast<int>(state.range(0));
    const BgraImage recording = stripes(1920, 1080);
    const FrameComposer composer = paddedComposer(*renderer);
    auto frame = composer.composeFrame(1, width, heightOf(width));
    BgraImage target(width, heightOf(width));
    std::uint64_t count = 0;
    while (state.KeepRunning()) {
        frame.uniforms.b.z = static_cast<float>(++count % 1000) * 0.0001F;
        renderer->render(frame, {{recording.view(), newPictures ? count : 1}}, target);
    }
}

/// A device with its surface.
struct OpenDevice {
    explicit OpenDevice(GpuApi api) {
        if (api == GpuApi::openGl) surface = GpuDevice::makeOpenGlSurface();
        device = surface ? GpuDevice::openOpenGl(*surface) : GpuDevice::openVulkan();
    }

    std::unique_ptr<QOffscreenSurface> surface;
    std::unique_ptr<GpuDevice> device;
};

/// A device frame that does nothing but these updates.
void carryOut(QRhi& rhi, QRhiResourceUpdateBatch* updates) {
    QRhiCommandBuffer* commands = nullptr;
    rhi.beginOffscreenFrame(&commands);
    commands->resourceUpdate(updates);
    rhi.endOffscreenFrame();
}

void uploadBgra(benchmark::State& state, GpuApi api) {
    const OpenDevice open(api);
    if (!open.device) return state.SkipWithError("no such device");
    const int width = static_cast<int>(state.range(0));
    const BgraImage picture = stripes(width, heightOf(width));
    GpuTexture texture(*open.device, QRhiTexture::BGRA8);
    while (state.KeepRunning()) {
        QRhiResourceUpdateBatch* const updates = open.device->rhi().nextResourceUpdateBatch();
        texture.upload(picture.view(), 0, *updates);
        carryOut(open.device->rhi(), updates);
    }
}

/// The planes of the same picture in 4:2:0, three bytes for every eight of BGRA.
void uploadPlanes(benchmark::State& state, GpuApi api) {
    const OpenDevice open(api);
    if (!open.device) return state.SkipWithError("no such device");
    QRhi& rhi = open.device->rhi();
    const int width = static_cast<int>(state.range(0));
    const std::array sizes{QSize(width, heightOf(width)), QSize(width, heightOf(width)) / 2,
                           QSize(width, heightOf(width)) / 2};
    const QByteArray bytes(qsizetype{width} * heightOf(width), 'x');
    std::vector<std::unique_ptr<QRhiTexture>> planes;
    for (const QSize& size : sizes)
        planes.emplace_back(rhi.newTexture(QRhiTexture::R8, size))->create();
    while (state.KeepRunning()) {
        QRhiResourceUpdateBatch* const updates = rhi.nextResourceUpdateBatch();
        for (const auto& plane : planes) {
            const qsizetype size = qsizetype{plane->pixelSize().width()} * plane->pixelSize().height();
            const QRhiTextureSubresourceUploadDescription content(
                QByteArray::fromRawData(bytes.constData(), size));
            updates->uploadTexture(plane.get(), QRhiTextureUploadDescription({0, 0, content}));
        }
        carryOut(rhi, updates);
    }
}

void readBack(benchmark::State& state, GpuApi api) {
    const OpenDevice open(api);
    if (!open.device) return state.SkipWithError("no such device");
    const int width = static_cast<int>(state.range(0));
    GpuCanvas canvas(*open.device, QRhiTexture::RGBA8);
    canvas.resize({width, heightOf(width)});
    QRhiReadbackResult result;
    while (state.KeepRunning()) {
        QRhiResourceUpdateBatch* const updates = open.device->rhi().nextResourceUpdateBatch();
        updates->readBackTexture({canvas.texture()}, &result);
        carryOut(open.device->rhi(), updates);
    }
}

void registerFor(GpuApi api, const std::string& name) {
    const auto add = [&name](const char* what, auto run) {
        benchmark::RegisterBenchmark((name + '/' + what).c_str(), run)
            ->ArgName("width")
            ->Arg(1920)
            ->Arg(3840)
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
    };
    add("frame", [api](benchmark::State& state) { drawFrames(state, api, true); });
    add("frame without upload", [api](benchmark::State& state) { drawFrames(state, api, false); });
    add("upload BGRA", [api](benchmark::State& state) { uploadBgra(state, api); });
    add("upload YUV planes", [api](benchmark::State& state) { uploadPlanes(state, api); });
    add("read back", [api](benchmark::State& state) { readBack(state, api); });
}

}  // namespace
}  // namespace tessaloom

int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, arguments);
    tessaloom::registerFor(tessaloom::GpuApi::openGl, "OpenGL");
    tessaloom::registerFor(tessaloom::GpuApi::vulkan, "Vulkan");
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
