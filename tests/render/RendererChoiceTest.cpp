// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/RendererChoice.h"

#include <gtest/gtest.h>

#include "render/CpuRenderer.h"
#include "render/GpuTestDevice.h"

namespace tessaloom {
namespace {

bool drawsOnGpu(const Renderer& renderer) {
    return dynamic_cast<const GpuRenderer*>(&renderer) != nullptr;
}

TEST(RendererChoiceTest, LeavesASoftwareGpuAlone) {
    for (const GpuApi api : test::everyGpuApi) {
        const auto opened = test::openGpuDevice(api);
        if (!opened.device) continue;
        const bool isTaken = GpuRenderer::open(api, {.accept = GpuRenderer::Accept::realGpu}) != nullptr;
        EXPECT_EQ(isTaken, !opened.device->isSoftware()) << opened.device->name();
    }
}

TEST(RendererChoiceTest, KnowsTheSoftwareGpusByWhatTheirDriversSay) {
    for (const GpuApi api : test::everyGpuApi) {
        const auto opened = test::openGpuDevice(api);
        if (!opened.device) continue;
        const bool isMesaSoftware = opened.device->name().find("llvmpipe") != std::string::npos;
        EXPECT_TRUE(!isMesaSoftware || opened.device->isSoftware()) << opened.device->name();
    }
}

TEST(RendererChoiceTest, TakesWhatIsAskedFor) {
    EXPECT_FALSE(drawsOnGpu(*makeRenderer("cpu")));
    if (!test::openGpuDevice(GpuApi::vulkan).device) GTEST_SKIP() << "this machine has no Vulkan";
    EXPECT_TRUE(drawsOnGpu(*makeRenderer("gpu")));
}

TEST(RendererChoiceTest, RefusesAnotherWord) {
    EXPECT_THROW(makeRenderer("fast"), RendererUnavailable);
}

}  // namespace
}  // namespace tessaloom
