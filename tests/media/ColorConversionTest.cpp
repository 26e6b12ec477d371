// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/ColorConversion.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <random>

namespace tessaloom {
namespace {

struct Sample {
    double luma = 0;
    double blue = 0;
    double red = 0;
};

// Straight from the standard's definition, in floating point.
Sample reference(double blue, double green, double red) {
    const double luma = (0.2126 * red + 0.7152 * green + 0.0722 * blue) / 255;
    return {16 + 219 * luma, 128 + 224 * (blue / 255 - luma) / 1.8556,
            128 + 224 * (red / 255 - luma) / 1.5748};
}

BgraImage noise(int width, int height) {
    BgraImage image(width, height);
    std::mt19937 generator(7);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < 4 * width; ++x) {
            // Every third value is an extreme one, where overflow would show.
            const auto value = generator();
            image.row(y)[x] = static_cast<std::uint8_t>(value % 3 == 0 ? (value & 8 ? 255 : 0) : value >> 8);
        }
    }
    return image;
}

double meanOfSquare(const BgraImage& image, int x, int y, int channel) {
    double sum = 0;
    for (int row = y; row < y + 2; ++row)
        for (int column = x; column < x + 2; ++column)
            sum += image.row(row)[4 * column + channel];
    return sum / 4;
}

int sampleAt(const YuvImage& image, int plane, int x, int y) {
    return image.plane(plane)[y * image.stride(plane) + x];
}

class ColorConversionOfAnyWidth : public ::testing::TestWithParam<int> {};

TEST_P(ColorConversionOfAnyWidth, IsTheNearestStepToTheDefinition) {
    const int width = GetParam();
    const int height = 6;
    const BgraImage source = noise(width, height);
    YuvImage target(width, height);
    bgraToYuv(source.view(), target, {0, 0, width, height});

    // Half a step of rounding, and the last bit of the fixed-point weights.
    const double tolerance = 0.51;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint8_t* pixel = source.row(y) + std::ptrdiff_t{4} * x;
            ASSERT_NEAR(sampleAt(target, 0, x, y), reference(pixel[0], pixel[1], pixel[2]).luma, tolerance);
        }
    }
    for (int y = 0; y < height; y += 2) {
        for (int x = 0; x < width; x += 2) {
            const Sample expected = reference(meanOfSquare(source, x, y, 0), meanOfSquare(source, x, y, 1),
                                              meanOfSquare(source, x, y, 2));
            ASSERT_NEAR(sampleAt(target, 1, x / 2, y / 2), expected.blue, tolerance);
            ASSERT_NEAR(sampleAt(target, 2, x / 2, y / 2), expected.red, tolerance);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Widths, ColorConversionOfAnyWidth,
                         ::testing::Values(2, 4, 6, 14, 16, 18, 30, 32, 34, 62, 64, 66, 130, 254));

struct KnownColor {
    std::array<std::uint8_t, 4> bgra;
    std::array<int, 3> yuv;
};

class ColorConversionOfKnownColors : public ::testing::TestWithParam<KnownColor> {};

TEST_P(ColorConversionOfKnownColors, GivesThePublishedValues) {
    BgraImage source(2, 2);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 8; ++x)
            source.row(y)[x] = GetParam().bgra[static_cast<std::size_t>(x % 4)];
    YuvImage target(2, 2);
    bgraToYuv(source.view(), target, 0, 0);
    for (int plane = 0; plane < 3; ++plane)
        EXPECT_EQ(sampleAt(target, plane, 0, 0), GetParam().yuv[static_cast<std::size_t>(plane)]) << plane;
}

INSTANTIATE_TEST_SUITE_P(Colors, ColorConversionOfKnownColors,
                         ::testing::Values(KnownColor{{0, 0, 0, 255}, {16, 128, 128}},
                                           KnownColor{{255, 255, 255, 0}, {235, 128, 128}},
                                           KnownColor{{0, 0, 255, 255}, {63, 102, 240}},
                                           KnownColor{{0, 255, 0, 255}, {173, 42, 26}},
                                           KnownColor{{255, 0, 0, 255}, {32, 240, 118}}));

TEST(ColorConversion, ChangesTheRegionGrownToEvenCoordinatesOnly) {
    const BgraImage source = noise(64, 32);
    YuvImage whole(64, 32);
    bgraToYuv(source.view(), whole, {0, 0, 64, 32});
    YuvImage target(64, 32);
    const YuvImage untouched(64, 32);
    bgraToYuv(source.view(), target, {11, 5, 20, 8});

    for (int plane = 0; plane < 3; ++plane) {
        const int scale = plane == 0 ? 1 : 2;
        for (int y = 0; y < 32 / scale; ++y) {
            for (int x = 0; x < 64 / scale; ++x) {
                const bool inside = x * scale >= 10 && x * scale < 32 && y * scale >= 4 && y * scale < 14;
                const YuvImage& expected = inside ? whole : untouched;
                ASSERT_EQ(sampleAt(target, plane, x, y), sampleAt(expected, plane, x, y))
                    << plane << ":" << x << "," << y;
            }
        }
    }
}

TEST(ColorConversion, PutsAPackedPictureInItsPlace) {
    const BgraImage source = noise(64, 32);
    YuvImage expected(64, 32);
    bgraToYuv(source.view(), expected, {20, 6, 24, 12});
    BgraImage packed(24, 12);
    for (int y = 0; y < 12; ++y)
        std::copy_n(source.row(y + 6) + 80, 96, packed.row(y));
    YuvImage target(64, 32);
    bgraToYuv(packed.view(), target, 20, 6);

    for (int plane = 0; plane < 3; ++plane) {
        const int scale = plane == 0 ? 1 : 2;
        for (int y = 0; y < 32 / scale; ++y)
            for (int x = 0; x < 64 / scale; ++x)
                ASSERT_EQ(sampleAt(target, plane, x, y), sampleAt(expected, plane, x, y));
    }
}

}  // namespace
}  // namespace tessaloom
