// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "commands/CommandTest.h"

namespace tessaloom::test {
namespace {

/// TESSALOOM_RENDERER, seen from outside.
class RendererOverrideTest : public CommandTest {
  protected:
    RendererOverrideTest() { makeRecording("take"); }

    CommandResult frameWith(const std::string& renderer) {
        environment_["TESSALOOM_RENDERER"] = renderer;
        return run({"frame", "take", "--at", "0.5", "--size", "64x36", "-o", picture_.string()});
    }

    std::filesystem::path picture_ = outputs() / "still.png";
};

TEST_F(RendererOverrideTest, TheCpuAlwaysDraws) {
    EXPECT_EQ(frameWith("cpu").status, 0);
    EXPECT_TRUE(std::filesystem::exists(picture_));
}

TEST_F(RendererOverrideTest, AGpuDrawsAndIsNamed) {
    environment_["TESSALOOM_VERBOSE"] = "1";
    const CommandResult result = frameWith("gpu");
    if (result.errors.find("There is no GPU") != std::string::npos) {
        GTEST_SKIP() << "this machine has no Vulkan";
    }
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_NE(result.errors.find("Drawing on "), std::string::npos) << result.errors;
    EXPECT_TRUE(std::filesystem::exists(picture_));
}

TEST_F(RendererOverrideTest, AGpuExportsAMovie) {
    environment_["TESSALOOM_RENDERER"] = "gpu";
    const std::filesystem::path film = outputs() / "film.mp4";
    const CommandResult result = run({"export", "take", "-o", film.string()});
    if (result.errors.find("There is no GPU") != std::string::npos) {
        GTEST_SKIP() << "this machine has no Vulkan";
    }
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, film.string() + '\n');
}

TEST_F(RendererOverrideTest, AMissingGpuIsSaidInASentence) {
    environment_["VK_ICD_FILENAMES"] = "/nowhere";
    expectRefused(frameWith("gpu"), 1, "There is no GPU");
    EXPECT_FALSE(std::filesystem::exists(picture_));
}

TEST_F(RendererOverrideTest, AnotherWordIsRefused) {
    expectRefused(frameWith("fast"), 1, "TESSALOOM_RENDERER is \"fast\".");
}

}  // namespace
}  // namespace tessaloom::test
