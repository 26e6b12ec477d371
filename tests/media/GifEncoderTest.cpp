// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/GifEncoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/GifProbe.h"
#include "support/MovieMaker.h"
#include "support/PixelAt.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using test::bytesOf;
using test::pixelAt;

constexpr int width = 60;
constexpr int height = 40;

BgraImage copyOf(const BgraImage& picture) {
    BgraImage copy;
    copyPixels(picture.view(), copy);
    return copy;
}

void paint(BgraImage& picture, PixelRect area, test::Bgr color) {
    for (int y = area.y; y < area.y + area.height; ++y)
        for (int x = area.x; x < area.x + area.width; ++x) {
            std::uint8_t* pixel = pixelAt(picture, x, y);
            pixel[0] = color.blue;
            pixel[1] = color.green;
            pixel[2] = color.red;
        }
}

int greatestDifference(const BgraImage& a, const BgraImage& b) {
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            for (int channel = 0; channel < 3; ++channel)
                greatest =
                    std::max(greatest, std::abs(pixelAt(a, x, y)[channel] - pixelAt(b, x, y)[channel]));
    return greatest;
}

class GifEncoderTest : public ::testing::Test {
  protected:
    void encode(const std::vector<BgraImage>& pictures, int delay = 5) const {
        GifEncoder encoder = GifEncoder::create(file_, true);
        for (const BgraImage& picture : pictures)
            encoder.add(picture.view(), delay);
        encoder.finish();
    }

    test::TemporaryFolder folder_;
    std::filesystem::path file_ = folder_.path() / "a.gif";
};

TEST_F(GifEncoderTest, FewColorsComeBackExactly) {
    BgraImage first = test::plainImage(width, height, {10, 200, 31});
    BgraImage second = copyOf(first);
    paint(second, {10, 5, 20, 10}, {255, 255, 254});
    BgraImage third = copyOf(second);
    paint(third, {0, 0, 60, 1}, {1, 2, 3});
    const BgraImage* pictures[] = {&first, &second, &third};
    std::vector<BgraImage> given;
    for (const BgraImage* picture : pictures)
        given.push_back(copyOf(*picture));
    encode(given);
    const auto shown = test::shownPictures(file_);
    ASSERT_EQ(shown.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(greatestDifference(shown[i], *pictures[i]), 0) << i;
}

TEST_F(GifEncoderTest, OnlyWhatChangedIsStored) {
    std::vector<BgraImage> pictures;
    pictures.push_back(test::plainImage(width, height, test::black));
    pictures.push_back(copyOf(pictures.back()));
    paint(pictures.back(), {10, 5, 20, 12}, test::white);
    pictures.push_back(copyOf(pictures.back()));
    encode(pictures);
    const auto frames = test::probeGif(file_).frames;
    ASSERT_EQ(frames.size(), 3U);
    EXPECT_EQ(frames[0].area, (PixelRect{0, 0, width, height}));
    EXPECT_EQ(frames[1].area, (PixelRect{10, 5, 20, 12}));
    EXPECT_EQ(frames[2].area, (PixelRect{0, 0, 1, 1}));
}

TEST_F(GifEncoderTest, ARepeatedPictureKeepsItsOwnDelayAndLooksTheSame) {
    GifEncoder encoder = GifEncoder::create(file_, true);
    const BgraImage picture = test::plainImage(width, height, test::pureRed);
    encoder.add(picture.view(), 7);
    encoder.addAgain(6);
    encoder.addAgain(300);
    encoder.finish();
    const test::GifFacts facts = test::probeGif(file_);
    EXPECT_EQ(facts.delays(), (std::vector<int>{7, 6, 300}));
    EXPECT_EQ(facts.frames[2].area, (PixelRect{0, 0, 1, 1}));
    EXPECT_EQ(greatestDifference(test::shownPictures(file_).back(), picture), 0);
}

TEST_F(GifEncoderTest, FaintNoiseIsNotDrawnAgain) {
    std::vector<BgraImage> pictures;
    pictures.push_back(test::plainImage(width, height, {100, 100, 100}));
    pictures.push_back(test::plainImage(width, height, {101, 99, 101}));
    pictures.push_back(test::plainImage(width, height, {110, 100, 100}));
    encode(pictures);
    const auto frames = test::probeGif(file_).frames;
    EXPECT_EQ(frames[1].area, (PixelRect{0, 0, 1, 1}));
    EXPECT_EQ(frames[2].area, (PixelRect{0, 0, width, height}));
}

TEST_F(GifEncoderTest, ASlowFadeIsFollowed) {
    std::vector<BgraImage> pictures;
    for (int level = 0; level <= 100; ++level) {
        const auto shade = static_cast<std::uint8_t>(2 * level);
        pictures.push_back(test::plainImage(width, height, {shade, shade, shade}));
    }
    encode(pictures);
    const auto shown = test::shownPictures(file_);
    for (std::size_t i = 0; i < pictures.size(); ++i)
        EXPECT_LE(greatestDifference(shown[i], pictures[i]), 4) << i;
}

TEST_F(GifEncoderTest, ASceneOfOtherColorsGetsAPaletteOfItsOwn) {
    // More colours than one palette holds, in two scenes that are each longer than what shares a palette.
    std::vector<BgraImage> pictures;
    for (int scene = 0; scene < 2; ++scene) {
        for (int n = 0; n < 40; ++n) {
            BgraImage& picture = pictures.emplace_back(test::plainImage(width, height, test::black));
            for (int x = 0; x < width; ++x)
                for (int y = 0; y < 3; ++y) {
                    const auto shade = static_cast<std::uint8_t>(70 + 3 * x);
                    paint(picture, {x, 10 * y, 1, 10},
                          scene == 0 ? test::Bgr{shade, static_cast<std::uint8_t>(y * 60), 0}
                                     : test::Bgr{0, static_cast<std::uint8_t>(y * 60), shade});
                }
            paint(picture, {n, 30, 2, 10}, test::white);
        }
    }
    encode(pictures);
    const test::GifFacts facts = test::probeGif(file_);
    EXPECT_FALSE(facts.frames[39 - 8].hasOwnPalette);
    EXPECT_TRUE(facts.frames.back().hasOwnPalette);
    const auto shown = test::shownPictures(file_);
    for (std::size_t i = 0; i < pictures.size(); ++i)
        EXPECT_LE(greatestDifference(shown[i], pictures[i]), 5) << i;
}

TEST_F(GifEncoderTest, NoiseStaysRecognizable) {
    std::mt19937 random(1);
    std::vector<BgraImage> pictures;
    for (int n = 0; n < 3; ++n) {
        BgraImage& picture = pictures.emplace_back(test::plainImage(300, 200, test::black));
        for (int y = 0; y < 200; ++y)
            for (int x = 0; x < 300; ++x)
                for (int channel = 0; channel < 3; ++channel)
                    pixelAt(picture, x, y)[channel] = static_cast<std::uint8_t>(random());
    }
    encode(pictures);
    const auto shown = test::shownPictures(file_);
    double squares = 0;
    for (std::size_t i = 0; i < pictures.size(); ++i)
        for (int y = 0; y < 200; ++y)
            for (int x = 0; x < 300; ++x)
                squares += squaredDistance(colorAt(shown[i].view(), x, y), colorAt(pictures[i].view(), x, y));
    // 255 colours that cut the cube into cells of 40 a side miss by 40^2/12 a channel.
    EXPECT_LT(squares / (3 * 3 * 300 * 200), 180);
}

}  // namespace
}  // namespace tessaloom
