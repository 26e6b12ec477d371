// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/GifEncoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "media/PaletteChoice.h"
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

/// More colours than a palette holds: red across, blue down.
BgraImage broadGradient() {
    BgraImage picture(256, 200);
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 256; ++x)
            paint(picture, {x, y, 1, 1},
                  {static_cast<std::uint8_t>(y), 60, static_cast<std::uint8_t>(255 - x)});
    return picture;
}

/// How far the means of eight by eight pixels are apart, on average over them and the channels.
double meanDifference(const BgraImage& a, const BgraImage& b) {
    double sum = 0;
    int count = 0;
    for (int top = 0; top + 8 <= a.height(); top += 8)
        for (int left = 0; left + 8 <= a.width(); left += 8)
            for (int channel = 0; channel < 3; ++channel, ++count) {
                int difference = 0;
                for (int y = top; y < top + 8; ++y)
                    for (int x = left; x < left + 8; ++x)
                        difference += pixelAt(a, x, y)[channel] - pixelAt(b, x, y)[channel];
                sum += std::abs(difference) / 64.0;
            }
    return sum / count;
}

/// Every pixel by the nearest of the 255 colours that suit the picture best.
BgraImage undithered(const BgraImage& picture) {
    ColorHistogram histogram;
    histogram.add(picture.view());
    ColorPalette palette(choosePalette(histogram.groups(), 255));
    BgraImage shown = copyOf(picture);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const std::uint32_t color = palette.colors()[palette.nearest(colorAt(picture.view(), x, y))];
            paint(shown, {x, y, 1, 1},
                  {static_cast<std::uint8_t>(color), static_cast<std::uint8_t>(color >> 8),
                   static_cast<std::uint8_t>(color >> 16)});
        }
    return shown;
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

TEST_F(GifEncoderTest, AGradientsLocalMeansComeNearerThanWithoutAPattern) {
    std::vector<BgraImage> pictures;
    pictures.push_back(broadGradient());
    encode(pictures);
    const BgraImage shown = std::move(test::shownPictures(file_).at(0));
    EXPECT_LT(meanDifference(shown, pictures[0]), 0.7 * meanDifference(undithered(pictures[0]), pictures[0]));
}

TEST_F(GifEncoderTest, AFlatPanelOverAGradientShowsOneColor) {
    std::vector<BgraImage> pictures;
    pictures.push_back(broadGradient());
    paint(pictures[0], {40, 40, 150, 120}, {34, 45, 33});
    paint(pictures[0], {60, 60, 100, 20}, {90, 97, 89});
    // Too small for colours of their own: those of the gradient around them are near.
    const auto smallPanel = [](int i) { return PixelRect{196 + 10 * i, 104, 8, 8}; };
    for (int i = 0; i < 6; ++i)
        paint(pictures[0], smallPanel(i), {108, 64, static_cast<std::uint8_t>(58 - 7 * i)});
    encode(pictures);
    const BgraImage shown = std::move(test::shownPictures(file_).at(0));
    const auto expectPlain = [&](PixelRect area, std::uint32_t color) {
        for (int y = area.y; y < area.y + area.height; ++y)
            for (int x = area.x; x < area.x + area.width; ++x)
                ASSERT_EQ(colorAt(shown.view(), x, y), color) << x << "," << y;
    };
    expectPlain({40, 90, 150, 70}, 0x212D22);
    expectPlain({60, 60, 100, 20}, 0x59615A);
    for (int i = 0; i < 6; ++i)
        expectPlain(smallPanel(i), colorAt(shown.view(), smallPanel(i).x, smallPanel(i).y));
}

TEST_F(GifEncoderTest, UnderAMovingPointerNothingElseChanges) {
    constexpr int steps = 70;  // more than two palettes' pictures
    const BgraImage still = broadGradient();
    const auto pointerAt = [](int step) { return PixelRect{10 + 3 * step, 20 + 2 * step, 8, 12}; };
    std::vector<BgraImage> pictures;
    for (int step = 0; step < steps; ++step) {
        pictures.push_back(copyOf(still));
        paint(pictures.back(), pointerAt(step), test::white);
    }
    encode(pictures);
    const auto shown = test::shownPictures(file_);
    const auto isInside = [](PixelRect area, int x, int y) {
        return x >= area.x && x < area.x + area.width && y >= area.y && y < area.y + area.height;
    };
    for (int step = 1; step < steps; ++step)
        for (int y = 0; y < still.height(); ++y)
            for (int x = 0; x < still.width(); ++x) {
                if (isInside(pointerAt(step), x, y) || isInside(pointerAt(step - 1), x, y)) continue;
                const auto place = static_cast<std::size_t>(step);
                ASSERT_EQ(colorAt(shown[place].view(), x, y), colorAt(shown[place - 1].view(), x, y))
                    << step << ": " << x << "," << y;
            }
    // Where the pointer has been the gradient is back as it was.
    EXPECT_EQ(colorAt(shown[40].view(), 12, 22), colorAt(shown[69].view(), 12, 22));
}

TEST_F(GifEncoderTest, TheSamePicturesMakeTheSameFile) {
    std::vector<BgraImage> pictures;
    pictures.push_back(broadGradient());
    pictures.push_back(copyOf(pictures[0]));
    paint(pictures[1], {20, 20, 100, 50}, test::white);
    const auto bytes = [&] {
        encode(pictures);
        std::ifstream file(file_, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    const std::string first = bytes();
    EXPECT_GT(first.size(), 1000U);
    EXPECT_TRUE(first == bytes());
}

TEST(GifEncoder, ALongRestIsWrittenOutMeanwhile) {
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "a.gif";
    auto gif = GifEncoder::create(path, true);
    constexpr int count = 30'000;
    gif.add(test::plainImage(width, height, test::pureRed).view(), 3);
    for (int n = 1; n < count; ++n)
        gif.addAgain(3);
    EXPECT_GT(std::filesystem::file_size(path), 100'000U);
    gif.add(test::plainImage(width, height, test::pureBlue).view(), 3);
    gif.finish();
    EXPECT_EQ(test::probeGif(path).frames.size(), count + 1U);
}

}  // namespace
}  // namespace tessaloom
