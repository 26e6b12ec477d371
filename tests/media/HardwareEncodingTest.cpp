// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/HardwareEncoding.h"

#include <gtest/gtest.h>

#include <fstream>

#include "media/H264Encoder.h"
#include "media/MediaError.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

TEST(HardwareEncoding, IsThereWhereADriverIsLoaded) {
    const test::TemporaryFolder folder;
    const auto driver = folder.path() / "version";
    EXPECT_FALSE(HardwareEncoding::installed("/state", driver));
    std::ofstream(driver) << "535.183.01\n";
    const auto hardware = HardwareEncoding::installed("/state", driver);
    ASSERT_TRUE(hardware);
    EXPECT_EQ(hardware->exported(64, 36, 500'000).encoder, "h264_nvenc");
}

TEST(HardwareEncoding, AnotherDriverHasAnotherMarker) {
    const test::TemporaryFolder folder;
    const auto driver = folder.path() / "version";
    const auto markerOf = [&driver](const char* version) {
        std::ofstream(driver) << version;
        return HardwareEncoding::installed("/state", driver)->marker;
    };
    EXPECT_EQ(markerOf("535.183.01"), "/state/nvenc-535.183.01.attempt");
    EXPECT_NE(markerOf("550.54.14"), markerOf("535.183.01"));
}

TEST(HardwareEncoding, AnEncoderThatIsMissingIsToldFromOtherFailures) {
    auto settings = H264Settings::exported(64, 36, 500'000);
    settings.encoder = "h264_missing";
    EXPECT_THROW(H264Encoder{settings}, EncodingError);
}

}  // namespace
}  // namespace tessaloom
