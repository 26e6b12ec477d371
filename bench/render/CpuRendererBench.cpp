// SPDX-License-Identifier: GPL-3.0-or-later
// Milliseconds per frame of the CPU renderer. A frame is a padded, rounded, shadowed recording with cursor,
// ripple, key label and caption; some have a camera bubble too.
#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QGuiApplication>
#include <array>

#include "render/ContentGeometry.h"
#include "render/CpuRenderer.h"
#include "render/GaussianBlur.h"

namespace tessaloom {
namespace {

BgraImage noise(int width, int height) {
    BgraImage picture(width, height);
    std::uint32_t state = 1;
    for (int y = 0; y < height; ++y) {
        for (int i = 0; i < width * 4; ++i) {
            state = state * 1664525 + 1013904223;
            picture.row(y)[i] = i % 4 == 3 ? std::uint8_t{255} : static_cast<std::uint8_t>(state >> 24);
        }
    }
    return picture;
}

FrameComposer::Frame typicalFrame(int width, int height, float style, const Renderer& renderer) {
    const auto canvasWidth = static_cast<float>(width);
    const auto canvasHeight = static_cast<float>(height);
    const ContentGeometry content =
        contentGeometry(canvasWidth, canvasHeight, canvasWidth / canvasHeight, 0.04F, 0.01F);
    const Float4 rect = toFloat4(content.rect);
    FrameComposer::Frame frame;
    frame.uniforms.a = {canvasWidth, canvasHeight, rect.x, rect.y};
    frame.uniforms.b = {rect.z, rect.w, 0.2F, 0.2F};
    frame.uniforms.c = {0.5F, 0.5F, content.cornerRadius, style};
    frame.uniforms.bgTop = {0.4F, 0.3F, 0.9F, 1};
    frame.uniforms.bgBottom = {0.9F, 0.4F, 0.5F, 1};
    frame.uniforms.d = {0.8F, 0.5F, 0, 0};
    const float scale = rect.z / 0.5F / 1920;
    const float x = canvasWidth * 0.5F;
    const float y = canvasHeight * 0.5F;
    const Size cursor = renderer.cursorImageSize();
    const Float4 meta{canvasWidth, canvasHeight, content.cornerRadius, 1};
    frame.cursor = CursorUniforms{
        {x, y, scale * static_cast<float>(cursor.width), scale * static_cast<float>(cursor.height)},
        meta,
        rect};
    const float radius = 44 * scale;
    frame.ripples.push_back(
        {{x - radius, y - radius, 2 * radius, 2 * radius}, {0.5F, 0, 0, 0}, {1, 1, 1, 0.55F}, meta, rect});
    frame.keystroke = KeystrokeChip{"⇧⌘K", 1};
    frame.caption.emplace();
    frame.caption->text = "This is a line of caption as people speak it";
    frame.caption->alpha = 1;
    frame.caption->activeWord = 3;
    return frame;
}

WebcamUniforms typicalBubble(int width, int height, float blur) {
    const auto canvasWidth = static_cast<float>(width);
    const auto canvasHeight = static_cast<float>(height);
    const float base = canvasWidth * 0.2F;
    WebcamUniforms webcam;
    webcam.rect = {canvasWidth * 0.75F, canvasHeight * 0.55F, base, base};
    webcam.params = {0, base * 0.5F, 1, base * 0.08F};
    webcam.meta = {canvasWidth, canvasHeight, 1, 0.45F};
    webcam.border = {1, 1, 1, base * 0.02F};
    webcam.blur.x = blur;
    return webcam;
}

void drawZoomingFrame(benchmark::State& state) {
    const int width = static_cast<int>(state.range(0));
    const int height = width * 9 / 16;
    const BgraImage recording = noise(1920, 1080);
    CpuRenderer renderer(static_cast<int>(state.range(2)));
    FrameComposer::Frame frame = typicalFrame(width, height, static_cast<float>(state.range(1)), renderer);
    BgraImage target(width, height);
    std::uint64_t identity = 0;
    while (state.KeepRunning()) {
        frame.uniforms.b.z = 0.2F + static_cast<float>(++identity % 1000) * 0.0001F;
        renderer.render(frame, {{recording.view(), identity}}, target);
    }
}

BENCHMARK(drawZoomingFrame)
    ->ArgNames({"width", "style", "threads"})
    ->ArgsProduct({{1920, 3840}, {1, 3}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// A still scene; only what the layer says is drawn on the backdrop of a single colour.
enum class Layer { none, cursor, ripple, keystroke, caption, webcam, blurredWebcam };

void drawLayer(benchmark::State& state) {
    const int width = static_cast<int>(state.range(0));
    const int height = width * 9 / 16;
    const auto layer = static_cast<Layer>(state.range(1));
    const BgraImage camera = noise(1280, 720);
    const BgraImage matte = noise(256, 144);
    CpuRenderer renderer(1);
    FrameComposer::Frame frame = typicalFrame(width, height, 0, renderer);
    frame.uniforms.b.x = frame.uniforms.b.y = 0;
    if (layer != Layer::cursor) frame.cursor.reset();
    if (layer != Layer::ripple) frame.ripples.clear();
    if (layer != Layer::keystroke) frame.keystroke.reset();
    if (layer != Layer::caption) frame.caption.reset();
    if (layer >= Layer::webcam) {
        frame.webcam = typicalBubble(width, height, layer == Layer::blurredWebcam ? 0.5F : 0);
    }
    BgraImage target(width, height);
    std::uint64_t identity = 0;
    while (state.KeepRunning()) {
        const SourcePicture picture{camera.view(), ++identity};
        renderer.render(frame, {{}, picture, {matte.view(), identity}}, target);
    }
}

BENCHMARK(drawLayer)
    ->ArgNames({"width", "layer"})
    ->ArgsProduct({{1920, 3840}, {0, 1, 2, 3, 4, 5, 6}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// As an export does it: into buffers that come round in turn. The scene is still but for the pointer, over a
// camera bubble, a key label and a caption that stay.
template <typename Picture>
void movePointer(benchmark::State& state) {
    struct Target {
        Picture picture;
        ShownFrame shown{};
    };
    const int width = static_cast<int>(state.range(0));
    const int height = width * 9 / 16;
    const BgraImage recording = noise(1920, 1080);
    const BgraImage camera = noise(1280, 720);
    const BgraImage matte = noise(256, 144);
    const FrameSources sources{{recording.view(), 1}, {camera.view(), 1}, {matte.view(), 1}};
    CpuRenderer renderer(static_cast<int>(state.range(1)));
    FrameComposer::Frame frame = typicalFrame(width, height, 1, renderer);
    frame.ripples.clear();
    frame.webcam = typicalBubble(width, height, 0.5F);
    std::array<Target, 4> targets;
    for (Target& target : targets)
        target.picture = Picture(width, height);
    std::uint64_t round = 0;
    const auto draw = [&] {
        frame.cursor->rect.x = static_cast<float>(width) * (0.2F + static_cast<float>(round % 500) * 0.001F);
        Target& target = targets[round++ % targets.size()];
        renderer.redraw(frame, sources, target.shown, target.picture);
        target.shown.frame = frame;
        target.shown.sources = contentsOf(sources);
    };
    for (std::size_t first = 0; first < targets.size(); ++first)
        draw();
    while (state.KeepRunning())
        draw();
}

BENCHMARK_TEMPLATE(movePointer, BgraImage)
    ->ArgNames({"width", "threads"})
    ->ArgsProduct({{1920, 3840}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(movePointer, YuvImage)
    ->ArgNames({"width", "threads"})
    ->ArgsProduct({{1920, 3840}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void blurCamera(benchmark::State& state) {
    const int width = static_cast<int>(state.range(0));
    const BgraImage camera = noise(width, width * 9 / 16);
    WorkerPool pool(1);
    GaussianBlur blur;
    while (state.KeepRunning())
        blur.blur(camera.view(), static_cast<double>(state.range(1)), pool);
}

BENCHMARK(blurCamera)
    ->ArgNames({"width", "sigma"})
    ->ArgsProduct({{1280, 1920}, {1, 5, 6, 20, 45}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tessaloom

int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, arguments);
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
