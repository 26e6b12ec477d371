// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuRenderer.h"

#include <gtest/gtest.h>

#include "render/GpuTestDevice.h"
#include "render/RandomFrame.h"
#include "render/ReferenceComparison.h"

namespace tessaloom {
namespace {

using test::Chance;
using test::ReferenceCanvas;

class GpuRendererTest : public ::testing::TestWithParam<GpuApi> {
  protected:
    void SetUp() override {
        renderer_ = test::openGpuRenderer(GetParam());
        if (!renderer_) GTEST_SKIP() << "this machine has no " << test::nameOf(GetParam());
    }

    std::unique_ptr<GpuRenderer> renderer_;
};

TEST_P(GpuRendererTest, DrawsTheCompositeAsItsFormulaSays) {
    Chance chance(1);
    for (int round = 0; round < 40; ++round) {
        const int width = chance.whole(1, 200);
        const int height = chance.whole(1, 120);
        const BgraImage recording = test::randomPicture(chance, chance.whole(1, 200), chance.whole(1, 120));
        FrameComposer::Frame frame;
        frame.uniforms = randomComposite(chance, width, height, static_cast<float>(round % 4));
        BgraImage target(width, height);
        renderer_->render(frame, {{recording.view(), 0}, {}, {}}, target);
        ReferenceCanvas expected(width, height);
        BgraImage black(1, 1);
        for (int i = 0; i < 4; ++i)
            black.row(0)[i] = i == 3 ? 255 : 0;
        referenceComposite(expected, frame.uniforms, recording.view(), black.view());
        EXPECT_TRUE(test::matchesReference(target, expected, "gpu-composite-" + std::to_string(round)))
            << frame.uniforms.a.z << " " << frame.uniforms.a.w << " size " << frame.uniforms.b.x << " "
            << frame.uniforms.b.y << " crop " << frame.uniforms.b.z << " " << frame.uniforms.b.w << " "
            << frame.uniforms.c.x << " " << frame.uniforms.c.y << " corner " << frame.uniforms.c.z
            << " canvas " << width << " " << height << " rec " << recording.width() << " "
            << recording.height();
    }
}

INSTANTIATE_TEST_SUITE_P(EachApi, GpuRendererTest, ::testing::ValuesIn(test::everyGpuApi),
                         [](const auto& info) { return test::nameOf(info.param); });

}  // namespace
}  // namespace tessaloom
