// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/CameraPixels.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <array>
#include <vector>

#include "media/MediaError.h"

namespace tessaloom {
namespace {

using Layout = CameraBuffer::Layout;

constexpr int width = 6;
constexpr int height = 4;

// BT.601 limited: Y, U, V of a saturated orange, and what it stands for.
constexpr std::uint8_t luma = 145;
constexpr std::uint8_t chromaBlue = 72;
constexpr std::uint8_t chromaRed = 190;
constexpr std::array<int, 3> bgr{37, 122, 249};

/// One colour everywhere, with `padding` bytes of something else behind each row of the first plane.
std::vector<std::uint8_t> plainPicture(Layout layout, int padding) {
    const auto row = [&](std::vector<std::uint8_t> pixel, int count, int gap) {
        std::vector<std::uint8_t> bytes;
        for (int i = 0; i < count; ++i)
            bytes.insert(bytes.end(), pixel.begin(), pixel.end());
        bytes.insert(bytes.end(), static_cast<std::size_t>(gap), 77);
        return bytes;
    };
    std::vector<std::uint8_t> bytes;
    const auto rows = [&](const std::vector<std::uint8_t>& one, int count) {
        for (int y = 0; y < count; ++y)
            bytes.insert(bytes.end(), one.begin(), one.end());
    };
    if (layout == Layout::bgrx) rows(row({37, 122, 249, 0}, width, padding), height);
    if (layout == Layout::rgbx) rows(row({249, 122, 37, 0}, width, padding), height);
    if (layout == Layout::yuyv) rows(row({luma, chromaBlue, luma, chromaRed}, width / 2, padding), height);
    if (layout == Layout::nv12) {
        rows(row({luma}, width, padding), height);
        rows(row({chromaBlue, chromaRed}, width / 2, padding), height / 2);
    }
    if (layout == Layout::i420) {
        rows(row({luma}, width, padding), height);
        rows(row({chromaBlue}, width / 2, padding / 2), height / 2);
        rows(row({chromaRed}, width / 2, padding / 2), height / 2);
    }
    return bytes;
}

int bytesPerRow(Layout layout) {
    if (layout == Layout::bgrx || layout == Layout::rgbx) return 4 * width;
    return layout == Layout::yuyv ? 2 * width : width;
}

CameraBuffer bufferOf(Layout layout, const std::vector<std::uint8_t>& bytes, int padding) {
    return {.layout = layout,
            .encoding = {.matrix = YuvEncoding::Matrix::bt601},
            .width = width,
            .height = height,
            .stride = bytesPerRow(layout) + padding,
            .bytes = bytes};
}

class CameraLayout : public ::testing::TestWithParam<Layout> {};

TEST_P(CameraLayout, KeepsItsColours) {
    for (const int padding : {0, 10}) {
        const auto bytes = plainPicture(GetParam(), padding);
        CameraPixels pixels;
        const BgraView picture = pixels.toBgra(bufferOf(GetParam(), bytes, padding));
        ASSERT_EQ(picture.width, width);
        ASSERT_EQ(picture.height, height);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                for (int channel = 0; channel < 3; ++channel) {
                    const int value = picture.row(y)[4 * x + channel];
                    EXPECT_NEAR(value, bgr[static_cast<std::size_t>(channel)], 1) << x << ',' << y;
                }
            }
        }
    }
}

TEST_P(CameraLayout, ABufferThatIsTooShortIsRefused) {
    auto bytes = plainPicture(GetParam(), 0);
    bytes.resize(bytes.size() - 7);
    CameraPixels pixels;
    EXPECT_THROW(pixels.toBgra(bufferOf(GetParam(), bytes, 0)), MediaError);
    EXPECT_THROW(pixels.toBgra(bufferOf(GetParam(), {}, 0)), MediaError);
}

TEST_P(CameraLayout, RowsWithoutAStrideFollowEachOther) {
    const auto bytes = plainPicture(GetParam(), 0);
    CameraBuffer buffer = bufferOf(GetParam(), bytes, 0);
    buffer.stride = 0;
    CameraPixels pixels;
    const BgraView picture = pixels.toBgra(buffer);
    EXPECT_NEAR(picture.row(height - 1)[4 * (width - 1)], bgr[0], 1);
}

INSTANTIATE_TEST_SUITE_P(All, CameraLayout,
                         ::testing::Values(Layout::bgrx, Layout::rgbx, Layout::yuyv, Layout::nv12,
                                           Layout::i420));

TEST(CameraPixels, WhatIsNoJpegIsRefusedAndTheNextPictureIsNot) {
    CameraPixels pixels;
    const std::vector<std::uint8_t> garbage(500, 0x5A);
    CameraBuffer buffer{.layout = Layout::mjpeg, .encoding = {}, .bytes = garbage};
    EXPECT_THROW(pixels.toBgra(buffer), MediaError);
    const auto bytes = plainPicture(Layout::yuyv, 0);
    EXPECT_EQ(pixels.toBgra(bufferOf(Layout::yuyv, bytes, 0)).width, width);
}

TEST(CameraPixels, AJpegIsDecoded) {
    CameraPixels pixels;
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(QColor(200, 120, 40));
    QByteArray file;
    QBuffer device(&file);
    ASSERT_TRUE(image.save(&device, "JPEG", 95));
    const std::vector<std::uint8_t> jpeg(file.begin(), file.end());
    const BgraView picture = pixels.toBgra({.layout = Layout::mjpeg, .encoding = {}, .bytes = jpeg});
    ASSERT_EQ(picture.width, 64);
    ASSERT_EQ(picture.height, 48);
    EXPECT_NEAR(picture.row(20)[4 * 20], 40, 4);
    EXPECT_NEAR(picture.row(20)[4 * 20 + 1], 120, 4);
    EXPECT_NEAR(picture.row(20)[4 * 20 + 2], 200, 4);
}

}  // namespace
}  // namespace tessaloom
