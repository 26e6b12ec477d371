// SPDX-License-Identifier: GPL-3.0-or-later
// Milliseconds per frame of the CPU renderer while a zoom runs: a padded, rounded, shadowed recording with
// cursor, ripple and key label. Arguments: canvas width, background style, threads.
#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QGuiApplication>

#include "render/ContentGeometry.h"
#include "render/CpuRenderer.h"

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
    return frame;
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

}  // namespace
}  // namespace tessaloom

int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, arguments);
    benchmark::Initialize(&argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
