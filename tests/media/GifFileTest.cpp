// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/GifFile.h"

#include <gtest/gtest.h>

#include <random>

#include "media/ColorPalette.h"
#include "support/GifProbe.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

std::vector<std::uint32_t> distinctColors(std::size_t count) {
    std::vector<std::uint32_t> colors;
    for (std::size_t i = 0; i < count; ++i)
        colors.push_back(static_cast<std::uint32_t>(i * 0x010307 + 0x102030) & 0xFFFFFF);
    return colors;
}

class GifFileTest : public ::testing::Test {
  protected:
    /// Writes these pixels as the only frame, one index beyond the colours being transparent, and counts
    /// those that come back otherwise.
    int wrongPixels(const std::vector<IndexedPixel>& pixels, int width, std::size_t colorCount) const {
        auto palette = distinctColors(colorCount);
        palette.push_back(0);
        GifFile file = GifFile::create(path_, true);
        const int height = static_cast<int>(pixels.size()) / width;
        file.append({.area = {0, 0, width, height},
                     .delay = 1,
                     .pixels = pixels,
                     .palette = palette,
                     .transparent = static_cast<std::uint8_t>(colorCount)});
        file.finish();
        const auto shown = test::shownPictures(path_);
        int wrong = 0;
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            const int place = static_cast<int>(i);
            const std::uint32_t color = colorAt(shown.at(0).view(), place % width, place / width);
            if (color != palette[pixels[i].index] && color != palette[pixels[i].alternative]) ++wrong;
        }
        return wrong;
    }

    test::TemporaryFolder folder_;
    std::filesystem::path path_ = folder_.path() / "a.gif";
};

TEST_F(GifFileTest, EverySizeOfPaletteComesBack) {
    std::mt19937 random(2);
    for (const std::size_t colors :
         {1U, 2U, 3U, 4U, 7U, 8U, 15U, 16U, 31U, 63U, 64U, 127U, 128U, 200U, 255U}) {
        std::vector<IndexedPixel> pixels;
        for (int i = 0; i < 64 * 50; ++i) {
            const auto index = static_cast<std::uint8_t>(random() % colors);
            pixels.push_back({index, index});
        }
        EXPECT_EQ(wrongPixels(pixels, 64, colors), 0) << colors;
    }
}

TEST_F(GifFileTest, EveryLengthEndsCleanly) {
    // The code size changes at some of these, and the dictionary fills up.
    std::mt19937 random(3);
    std::vector<IndexedPixel> pixels;
    for (int length = 1; length < 6000; length += length < 600 ? 1 : 97) {
        while (static_cast<int>(pixels.size()) < length) {
            const auto index = static_cast<std::uint8_t>(random() % 255);
            pixels.push_back({index, index});
        }
        ASSERT_EQ(wrongPixels(pixels, length, 255), 0) << length;
    }
}

TEST_F(GifFileTest, ThousandsOfFullDictionariesStayApart) {
    std::mt19937 random(4);
    std::vector<IndexedPixel> pixels;
    for (int i = 0; i < 700 * 600; ++i) {
        const auto index = static_cast<std::uint8_t>(random() % 255);
        pixels.push_back({index, index});
    }
    EXPECT_EQ(wrongPixels(pixels, 700, 255), 0);
}

TEST_F(GifFileTest, OfTwoIndicesEitherIsShownAndTheFileIsSmaller) {
    std::mt19937 random(5);
    std::vector<IndexedPixel> free;
    std::vector<IndexedPixel> bound;
    for (int i = 0; i < 100 * 100; ++i) {
        const auto index = static_cast<std::uint8_t>(i / 7 % 9);
        const auto other = static_cast<std::uint8_t>(random() % 2 == 0 ? index : 20);
        free.push_back({other, index});
        bound.push_back({other, other});
    }
    EXPECT_EQ(wrongPixels(bound, 100, 64), 0);
    const auto boundSize = std::filesystem::file_size(path_);
    EXPECT_EQ(wrongPixels(free, 100, 64), 0);
    EXPECT_LT(std::filesystem::file_size(path_), boundSize * 95 / 100);
}

TEST_F(GifFileTest, AFolderThatIsNotThereIsReported) {
    EXPECT_THROW(GifFile::create(folder_.path() / "nowhere" / "a.gif", true), std::system_error);
}

}  // namespace
}  // namespace tessaloom
