// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

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
constexpr int frameCount = 240;
/// The view moves before this one and rests afterwards.
constexpr int restStart = 160;

/// A page with boxes of all sizes and greys.
YuvImage page() {
    YuvImage picture = plainYuv(canvas.width, canvas.height, white);
    std::mt19937 random(3);
    const auto below = [&random](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    for (int box = 0; box < 60; ++box) {
        const int left = below(canvas.width - 40);
        const int top = below(canvas.height - 12);
        const int shade = 16 + below(220);
        const auto width = static_cast<std::size_t>(1 + below(40));
        const int bottom = top + 1 + below(12);
        for (int y = top; y < bottom; ++y)
            std::memset(picture.plane(0) + y * picture.stride(0) + left, shade, width);
    }
    return picture;
}

/// A film like those of this program: a zoom into a page that glides, and a line that changes at its end.
class ExportQualityTest : public ::testing::Test {
  protected:
    ExportQualityTest() {
        for (int n = 0; n < frameCount; ++n)
            frames_.push_back(frame(n));
    }

    /// The page's luma between its pixels.
    double sample(double x, double y) const {
        const auto left = static_cast<int>(x);
        const auto top = static_cast<int>(y);
        const std::uint8_t* upper = page_.plane(0) + top * page_.stride(0) + left;
        const std::uint8_t* lower = upper + page_.stride(0);
        const double across = x - left;
        const double down = y - top;
        return (upper[0] * (1 - across) + upper[1] * across) * (1 - down) +
               (lower[0] * (1 - across) + lower[1] * across) * down;
    }

    YuvImage frame(int index) const {
        YuvImage yuv = plainYuv(canvas.width, canvas.height, white);
        const double moved = std::min(index, restStart) / static_cast<double>(restStart);
        const double scale = 0.95 - 0.4 * moved;
        for (int y = 0; y < canvas.height; ++y)
            for (int x = 0; x < canvas.width; ++x)
                yuv.plane(0)[y * yuv.stride(0) + x] =
                    static_cast<std::uint8_t>(std::lround(sample(x * scale + 30 * moved, y * scale)));
        if (index > restStart) std::memset(yuv.plane(0), 16 + index % 200, canvas.width / 2);
        return yuv;
    }

    /// Bytes of the film.
    double film(QualityPreset quality) const {
        const auto bitRate = movieBitRate(canvas, bitsPerPixel(quality));
        const auto writer = MovieWriter::create(
            path_, {.video = H264Settings::exported(canvas.width, canvas.height, bitRate)});
        for (int n = 0; n < frameCount; ++n)
            writer->appendVideo(frames_[static_cast<std::size_t>(n)], n / 60.0, 1 / 60.0,
                                n <= restStart ? PictureMotion::moving : PictureMotion::still);
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
            const YuvImage& yuv = frames_[static_cast<std::size_t>(n)];
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
    YuvImage page_ = page();
    std::vector<YuvImage> frames_;
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
