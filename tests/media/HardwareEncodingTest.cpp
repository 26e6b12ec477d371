// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/HardwareEncoding.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "media/H264Encoder.h"
#include "media/LibavHandles.h"
#include "media/MediaError.h"
#include "media/MovieWriter.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

constexpr int width = 64;
constexpr int height = 36;
constexpr std::int64_t bitRate = 500'000;

const std::string* optionOf(const H264Settings& settings, const std::string& name) {
    const auto found = std::ranges::find(settings.options, name, &std::pair<std::string, std::string>::first);
    return found == settings.options.end() ? nullptr : &found->second;
}

/// A machine as its kernel's files tell of it.
class HardwareEncodingTest : public ::testing::Test {
  protected:
    HardwareEncodingTest() { write("proc/sys/kernel/osrelease", "6.1.0-28-amd64\n"); }

    void write(const fs::path& file, const std::string& text) const {
        fs::create_directories((root_ / file).parent_path());
        std::ofstream(root_ / file) << text;
    }

    void plugIn(const std::string& node, const std::string& driver) const {
        write("dev/dri/" + node, "");
        const auto device = root_ / "sys/class/drm" / node / "device";
        fs::create_directories(device);
        fs::create_symlink("../../../bus/pci/drivers/" + driver, device / "driver");
    }

    std::vector<HardwareEncoding> installed() const { return HardwareEncoding::installed("/state", root_); }

    /// Encoder, device, low power and marker of each, in order.
    std::vector<std::string> summary() const {
        std::vector<std::string> lines;
        for (const auto& hardware : installed()) {
            const H264Settings settings = hardware.exported(width, height, bitRate);
            std::string line = settings.encoder;
            if (settings.surfaces)
                line += " " + settings.surfaces->interface + " " +
                        fs::path(settings.surfaces->name).lexically_relative(root_).string();
            if (const auto* lowPower = optionOf(settings, "low_power")) line += " " + *lowPower;
            lines.push_back(line + " " + hardware.marker.string());
        }
        return lines;
    }

    test::TemporaryFolder folder_;
    fs::path root_ = folder_.path();
};

TEST_F(HardwareEncodingTest, WithoutADriverThereIsNone) {
    EXPECT_TRUE(installed().empty());
    fs::remove_all(root_);
    EXPECT_TRUE(installed().empty());
}

TEST_F(HardwareEncodingTest, NvidiasDriverTellsItsVersion) {
    write("sys/module/nvidia/version", "535.183.01\n");
    EXPECT_EQ(summary(), std::vector<std::string>{"h264_nvenc /state/nvenc-535.183.01.attempt"});
}

TEST_F(HardwareEncodingTest, ARenderNodeIsTriedAtFullPowerAndThenAtLow) {
    plugIn("renderD128", "i915");
    const std::vector<std::string> expected{
        "h264_vaapi vaapi dev/dri/renderD128 0 /state/vaapi-i915-6.1.0-28-amd64.attempt",
        "h264_vaapi vaapi dev/dri/renderD128 1 /state/vaapi-i915-6.1.0-28-amd64.attempt"};
    EXPECT_EQ(summary(), expected);
}

TEST_F(HardwareEncodingTest, NvidiaComesFirstAndTheNodesInOrder) {
    plugIn("renderD129", "amdgpu");
    plugIn("renderD128", "i915");
    write("sys/module/nvidia/version", "535.183.01\n");
    const auto lines = summary();
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_TRUE(lines[0].starts_with("h264_nvenc"));
    EXPECT_TRUE(lines[1].starts_with("h264_vaapi vaapi dev/dri/renderD128"));
    EXPECT_TRUE(lines[3].starts_with("h264_vaapi vaapi dev/dri/renderD129"));
}

TEST_F(HardwareEncodingTest, WhatHasNoHardwareBehindItIsNotTried) {
    write("dev/dri/card0", "");
    write("dev/dri/renderD128", "");
    fs::create_directories(root_ / "sys/class/drm/renderD128");
    EXPECT_TRUE(installed().empty());
}

TEST_F(HardwareEncodingTest, AnotherDriverHasAnotherMarker) {
    const auto markers = [this](const char* nvidia, const char* kernel) {
        write("sys/module/nvidia/version", nvidia);
        write("proc/sys/kernel/osrelease", kernel);
        const auto encodings = installed();
        return std::pair(encodings.front().marker, encodings.back().marker);
    };
    plugIn("renderD128", "amdgpu");
    const auto before = markers("535.183.01", "6.1.0-28-amd64");
    const auto after = markers("550.54.14", "6.1.0-30-amd64");
    EXPECT_NE(before.first, after.first);
    EXPECT_NE(before.second, after.second);
    EXPECT_EQ(markers("535.183.01", "6.1.0-28-amd64"), before);
}

/// An encoder that has been told what the settings say, but isn't open: its hardware needn't be there.
LibavHandle<AVCodecContext> told(const H264Settings& settings) {
    const AVCodec* encoder = avcodec_find_encoder_by_name(settings.encoder.c_str());
    LibavHandle<AVCodecContext> context(avcodec_alloc_context3(encoder));
    for (const auto& [name, value] : settings.options)
        EXPECT_GE(av_opt_set(context.get(), name.c_str(), value.c_str(), AV_OPT_SEARCH_CHILDREN), 0)
            << settings.encoder << " " << name;
    return context;
}

H264Settings byVaapi(bool lowPower) {
    return H264Settings::exportedByVaapi(width, height, bitRate, "/dev/dri/renderD128", lowPower);
}

TEST(ExportSettings, EveryEncoderUnderstandsTheRateAndTheColours) {
    for (const auto& settings :
         {H264Settings::exported(width, height, bitRate),
          H264Settings::exportedByNvenc(width, height, bitRate), byVaapi(false), byVaapi(true)}) {
        SCOPED_TRACE(settings.encoder);
        const auto context = told(settings);
        EXPECT_EQ(context->bit_rate, bitRate);
        EXPECT_EQ(context->colorspace, AVCOL_SPC_BT709);
        EXPECT_EQ(context->color_primaries, AVCOL_PRI_BT709);
        EXPECT_EQ(context->color_trc, AVCOL_TRC_BT709);
        EXPECT_EQ(context->color_range, AVCOL_RANGE_MPEG);
    }
}

TEST(ExportSettings, VaapisAreHighProfileWithoutLaterPicturesAndAKeyFrameEvery250) {
    for (const bool lowPower : {false, true}) {
        const auto settings = byVaapi(lowPower);
        const auto context = told(settings);
        std::int64_t profile = 0;
        av_opt_get_int(context.get(), "profile", AV_OPT_SEARCH_CHILDREN, &profile);
        EXPECT_EQ(profile, FF_PROFILE_H264_HIGH);
        EXPECT_EQ(context->max_b_frames, 0);
        EXPECT_EQ(context->gop_size, 250);
        EXPECT_DOUBLE_EQ(settings.keyFrameInterval, 250.0 / 60);
    }
}

TEST(Encoders, OneThatIsMissingIsToldFromOtherFailures) {
    auto settings = H264Settings::exported(width, height, bitRate);
    settings.encoder = "h264_missing";
    EXPECT_THROW(H264Encoder{settings}, EncodingError);
}

TEST(Encoders, OneThatLeavesTheContainerWithoutParameterSetsIsRefused) {
    const test::TemporaryFolder folder;
    auto settings = H264Settings::exported(width, height, bitRate);
    settings.encoder = "mpeg2video";  // it writes them into the pictures alone
    EXPECT_THROW(MovieWriter::create(folder.path() / "a.mp4", {.video = settings}), EncodingError);
}

}  // namespace
}  // namespace tessaloom
