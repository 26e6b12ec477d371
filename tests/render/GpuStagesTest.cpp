// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuStages.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "render/GpuTestDevice.h"
#include "render/LogLines.h"
#include "render/RandomFrame.h"
#include "render/ReferenceComparison.h"
#include "support/PixelAt.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

const QString intactShaders = ":/tessaloom/shaders";

class GpuStagesTest : public ::testing::TestWithParam<GpuApi> {
  protected:
    /// Copies all shaders and cuts this one short.
    std::string shadersWithBroken(const QString& name) const {
        const QDir target(QString::fromStdString(folder_.path().string()));
        for (const QString& file : QDir(intactShaders).entryList())
            QFile::copy(intactShaders + '/' + file, target.filePath(file));
        QFile broken(target.filePath(name + ".qsb"));
        broken.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        EXPECT_TRUE(broken.resize(10));
        return target.path().toStdString();
    }

    /// The stages that can be drawn with these shaders, and why the others can't.
    std::pair<std::vector<bool>, std::string> built(const std::string& shaderFolder) const {
        const auto opened = test::openGpuDevice(GetParam());
        if (!opened.device) return {};
        const GpuInputs inputs(*opened.device);
        const GpuCanvas canvas(*opened.device, QRhiTexture::RGBA8);
        const GpuStages stages(*opened.device, inputs, *canvas.pass(), QString::fromStdString(shaderFolder),
                               canvas.texture());
        std::vector<bool> present;
        for (const GpuStage stage : {GpuStage::composite, GpuStage::cursor, GpuStage::ripple,
                                     GpuStage::webcam, GpuStage::roundedRect, GpuStage::chip})
            present.push_back(stages.pipeline(stage) != nullptr);
        return {present, stages.pipelineError().value_or("")};
    }

    void SetUp() override {
        if (!test::openGpuDevice(GetParam()).device)
            GTEST_SKIP() << "this machine has no " << test::nameOf(GetParam());
    }

    test::TemporaryFolder folder_;
};

using Present = std::vector<bool>;

TEST_P(GpuStagesTest, AreAllBuiltFromIntactShaders) {
    EXPECT_EQ(built(intactShaders.toStdString()), std::pair(Present(6, true), std::string()));
}

TEST_P(GpuStagesTest, KeepThoseBuiltBeforeTheOneThatFails) {
    const test::LogLines log;
    EXPECT_EQ(built(shadersWithBroken("webcam.frag")),
              std::pair(Present({true, true, true, false, false, false}),
                        std::string("can't read the shader webcam.frag")));
    EXPECT_EQ(test::LogLines::lines.last(), "Failed to build pipeline: can't read the shader webcam.frag");
}

/// What the device shows after drawing these boxes on black.
BgraImage drawnBoxes(GpuDevice& device, QSize size, const std::vector<RoundedRectUniforms>& boxes) {
    QRhi& rhi = device.rhi();
    GpuInputs inputs(device);
    GpuCanvas canvas(device, QRhiTexture::RGBA8);
    EXPECT_TRUE(canvas.resize(size));
    const GpuStages stages(device, inputs, *canvas.pass(), intactShaders, canvas.texture());
    const GpuInputs::Bindings noTextures = inputs.bind({});
    std::vector<quint32> records;
    for (const RoundedRectUniforms& box : boxes)
        records.push_back(inputs.add(box));
    QRhiCommandBuffer* commands = nullptr;
    QRhiReadbackResult result;
    rhi.beginOffscreenFrame(&commands);
    QRhiResourceUpdateBatch* const uploads = rhi.nextResourceUpdateBatch();
    EXPECT_TRUE(inputs.upload(*uploads));
    commands->beginPass(canvas.target(), Qt::black, {1, 0}, uploads);
    for (const quint32 record : records)
        stages.pipeline(GpuStage::roundedRect)->draw(*commands, size, *noTextures, record);
    QRhiResourceUpdateBatch* const readback = rhi.nextResourceUpdateBatch();
    readback->readBackTexture({canvas.texture()}, &result);
    commands->endPass(readback);
    rhi.endOffscreenFrame();
    BgraImage image(size.width(), size.height());
    for (int i = 0; i < size.width() * size.height(); ++i) {
        std::uint8_t* pixel = test::pixelAt(image, i % size.width(), i / size.width());
        // The device keeps red first.
        for (int channel = 0; channel < 3; ++channel)
            pixel[channel] = static_cast<std::uint8_t>(result.data.at(4 * i + 2 - channel));
        pixel[3] = 255;
    }
    return image;
}

TEST_P(GpuStagesTest, DrawRoundedRectanglesAsTheFormulaSays) {
    const auto opened = test::openGpuDevice(GetParam());
    test::Chance chance(1);
    for (int round = 0; round < 30; ++round) {
        // More than the buffer of records has room for at first.
        const int count = round == 0 ? 40 : 2;
        std::vector<RoundedRectUniforms> boxes;
        test::ReferenceCanvas expected(90, 60);
        for (int i = 0; i < count; ++i) {
            boxes.push_back(test::randomRoundedRect(chance, 90, 60));
            test::referenceRoundedRect(expected, boxes.back());
        }
        EXPECT_TRUE(test::matchesReference(drawnBoxes(*opened.device, {90, 60}, boxes), expected,
                                           "gpu-boxes" + std::to_string(round)));
    }
}

/// All black but for a bubble and a ripple where the stages for them are.
FrameComposer::Frame frameWithRippleAndBubble() {
    FrameComposer::Frame frame;
    frame.uniforms.a = {64, 36, 0, 0};
    frame.uniforms.b = {64, 36, 0, 0};
    frame.uniforms.c = {1, 1, 0, 0};
    frame.ripples.push_back({{0, 0, 36, 36}, {0.5F, 0, 0, 0}, {1, 1, 1, 1}, {64, 36, 0, 0}, {0, 0, 64, 36}});
    frame.webcam = {{40, 8, 20, 20}, {2, 3, 0, 6}, {64, 36, 1, 0.45F}, {1, 1, 1, 4}, {}};
    return frame;
}

struct Shown {
    bool ripple = false;
    bool bubble = false;

    bool operator==(const Shown&) const = default;
};

Shown shownWith(GpuApi api, const std::string& shaderFolder) {
    const auto renderer = test::openGpuRenderer(api, shaderFolder);
    const std::array<std::uint8_t, 4> white{255, 255, 255, 255};
    BgraImage target(64, 36);
    renderer->render(frameWithRippleAndBubble(), {{}, {{white.data(), 1, 1, 4}, 0}, {}}, target);
    return {target.row(18)[4 * 9] > 100, target.row(18)[4 * 50] > 200};
}

TEST_P(GpuStagesTest, LeaveOutOnlyWhatIsAbsent) {
    EXPECT_EQ(shownWith(GetParam(), intactShaders.toStdString()), (Shown{true, true}));
    EXPECT_EQ(shownWith(GetParam(), shadersWithBroken("webcam.frag")), (Shown{true, false}));
}

TEST_P(GpuStagesTest, DrawNothingAtAllWithoutTheComposite) {
    EXPECT_EQ(shownWith(GetParam(), shadersWithBroken("composite.vert")), (Shown{false, false}));
}

TEST_P(GpuStagesTest, ThatAreIncompleteAreTold) {
    const auto renderer = test::openGpuRenderer(GetParam(), shadersWithBroken("chip.vert"));
    EXPECT_EQ(renderer->pipelineError(), "can't read the shader chip.vert");
}

INSTANTIATE_TEST_SUITE_P(EachApi, GpuStagesTest, ::testing::ValuesIn(test::everyGpuApi),
                         [](const auto& info) { return test::nameOf(info.param); });

}  // namespace
}  // namespace tessaloom
