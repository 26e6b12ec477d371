// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

#include "export/QualityPreset.h"
#include "media/ColorConversion.h"
#include "media/H264Settings.h"
#include "media/MovieReader.h"
#include "media/MovieWriter.h"
#include "media/YuvToBgra.h"
#include "support/MovieMaker.h"
#include "support/PixelAt.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::test {
namespace {

constexpr CanvasSize canvas{640, 360};
constexpr int frameCount = 90;

/// A page of boxes of all sizes and greys, larger than the canvas.
BgraImage page() {
    BgraImage picture = plainImage(canvas.width + frameCount, canvas.height + frameCount, white);
    std::mt19937 random(3);
    const auto below = [&random](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    for (int box = 0; box < 900; ++box) {
        const int left = below(picture.width() - 40);
        const int top = below(picture.height() - 12);
        const auto shade = static_cast<std::uint8_t>(below(256));
        const int right = left + 1 + below(40);
        const int bottom = top + 1 + below(12);
        for (int y = top; y < bottom; ++y)
            std::memset(pixelAt(picture, left, y), shade, bytesOf(right - left));
    }
    return picture;
}

/// The view glides over the page for half of the film; a line of it changes in the other half.
class ExportQualityTest : public ::testing::Test {
  protected:
    YuvImage frame(int index) const {
        const int moved = std::min(index, frameCount / 2);
        const BgraView part{page_.row(moved) + std::ptrdiff_t{4} * moved, canvas.width, canvas.height,
                            page_.stride()};
        YuvImage yuv(canvas.width, canvas.height);
        bgraToYuv(part, yuv, 0, 0);
        if (index > moved)
            std::memset(yuv.plane(0), index * 5 % 256, static_cast<std::size_t>(canvas.width / 2));
        return yuv;
    }

    /// Bytes of the film.
    double film(QualityPreset quality) const {
        const auto bitRate = movieBitRate(canvas, bitsPerPixel(quality));
        const auto writer = MovieWriter::create(
            path_, {.video = H264Settings::exported(canvas.width, canvas.height, bitRate)});
        for (int n = 0; n < frameCount; ++n)
            writer->appendVideo(frame(n), n / 60.0, 1 / 60.0,
                                n <= frameCount / 2 ? PictureMotion::moving : PictureMotion::still);
        writer->finish();
        return static_cast<double>(std::filesystem::file_size(path_));
    }

    /// In decibels, over all frames.
    double likeness() const {
        double squares = 0;
        BgraImage shown;
        BgraImage wanted(canvas.width, canvas.height);
        const auto reader = MovieReader::open(path_);
        for (int n = 0; n < frameCount; ++n) {
            reader->next()->toBgra(shown);
            const YuvImage yuv = frame(n);
            yuvToBgra({.planes = {yuv.plane(0), yuv.plane(1), yuv.plane(2)},
                       .strides = {yuv.stride(0), yuv.stride(1), yuv.stride(2)},
                       .width = canvas.width,
                       .height = canvas.height},
                      {}, wanted);
            squares += squaredDifference(shown, wanted);
        }
        constexpr double samples = 3.0 * canvas.width * canvas.height * frameCount;
        return 10 * std::log10(255.0 * 255.0 * samples / squares);
    }

    static double squaredDifference(const BgraImage& a, const BgraImage& b) {
        double sum = 0;
        for (int y = 0; y < a.height(); ++y)
            for (int x = 0; x < 4 * a.width(); ++x) {
                const int difference = a.row(y)[x] - b.row(y)[x];
                sum += difference * difference;
            }
        return sum;
    }

  private:
    TemporaryFolder folder_;
    std::filesystem::path path_ = folder_.path() / "a.mp4";
    BgraImage page_ = page();
};

TEST_F(ExportQualityTest, EachQualityTakesClearlyMoreRoomThanTheOneBelowAndLooksBetter) {
    const double high = film(QualityPreset::high);
    const double highLikeness = likeness();
    const double balanced = film(QualityPreset::balanced);
    const double balancedLikeness = likeness();
    const double small = film(QualityPreset::small);
    const double smallLikeness = likeness();
    EXPECT_LT(balanced, 0.85 * high);
    EXPECT_LT(small, 0.8 * balanced);
    EXPECT_LT(balancedLikeness, highLikeness - 0.5);
    EXPECT_LT(smallLikeness, balancedLikeness - 0.5);
    EXPECT_GT(smallLikeness, 30);
}

TEST_F(ExportQualityTest, TheBestHasTheFinestQuantisersWhateverItsSize) {
    for (const CanvasSize size : {CanvasSize{1920, 1080}, CanvasSize{3840, 2160}, CanvasSize{160, 90}}) {
        const auto settings = H264Settings::exported(size.width, size.height,
                                                     movieBitRate(size, bitsPerPixel(QualityPreset::high)));
        EXPECT_EQ(settings.finestQuantisers->still, 10);
        EXPECT_EQ(settings.finestQuantisers->moving, 26);
    }
}

}  // namespace
}  // namespace tessaloom::test
