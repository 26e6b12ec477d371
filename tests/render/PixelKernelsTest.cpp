// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PixelKernels.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <algorithm>
#include <vector>

#include "render/RandomFrame.h"

namespace tessaloom {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes randomBytes(test::Chance& chance, std::size_t count) {
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(chance.whole(0, 255));
    return bytes;
}

int mixed(int a, int b, int weight) {
    return a + (((b - a) * weight + 16384) >> 15);
}

/// Runs the same checks on each instruction set this processor has.
class PixelKernelsTest : public ::testing::TestWithParam<std::int64_t> {
  protected:
    void SetUp() override { choose(GetParam()); }
    void TearDown() override { choose(0); }

    static void choose(std::int64_t target) {
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }

    test::Chance chance_{1};
};

TEST_P(PixelKernelsTest, MixRowsOfAnyLength) {
    for (const std::int16_t weight : std::initializer_list<std::int16_t>{0, 1, 16384, 32767}) {
        for (std::size_t count = 0; count < 150; ++count) {
            const Bytes a = randomBytes(chance_, count);
            const Bytes b = randomBytes(chance_, count);
            Bytes out(count + 1, 77);
            PixelKernels::mixRows(a.data(), b.data(), weight, out.data(), count);
            for (std::size_t i = 0; i < count; ++i)
                ASSERT_EQ(out[i], mixed(a[i], b[i], weight));
            ASSERT_EQ(out[count], 77) << "written past the end";
        }
    }
}

TEST_P(PixelKernelsTest, ReachTheFarEndWithTheLargestWeight) {
    const Bytes black(64, 0);
    const Bytes white(64, 255);
    Bytes out(64);
    PixelKernels::mixRows(black.data(), white.data(), PixelKernels::largestWeight, out.data(), out.size());
    EXPECT_EQ(out, white);
    PixelKernels::mixRows(white.data(), black.data(), PixelKernels::largestWeight, out.data(), out.size());
    EXPECT_EQ(out, black);
}

TEST_P(PixelKernelsTest, ResampleRowsOfAnyLength) {
    const Bytes source = randomBytes(chance_, 200);
    for (const std::size_t pixels : {0, 1, 2, 3, 15, 16, 17, 255, 256, 257, 700}) {
        std::vector<std::int32_t> columns(pixels);
        std::vector<std::int16_t> weights(pixels * 4);
        for (std::size_t i = 0; i < pixels; ++i) {
            columns[i] = chance_.whole(0, 48);
            std::fill_n(weights.begin() + static_cast<std::ptrdiff_t>(i * 4), 4,
                        static_cast<std::int16_t>(chance_.whole(0, 32767)));
        }
        Bytes out(pixels * 4 + 1, 77);
        PixelKernels::resampleRow(source.data(), columns.data(), weights.data(), out.data(), pixels);
        for (std::size_t i = 0; i < pixels * 4; ++i) {
            const std::size_t from = static_cast<std::size_t>(columns[i / 4]) * 4 + i % 4;
            ASSERT_EQ(out[i], mixed(source[from], source[from + 4], weights[i])) << pixels;
        }
        ASSERT_EQ(out[pixels * 4], 77) << "written past the end";
    }
}

TEST_P(PixelKernelsTest, AddRows) {
    const Bytes bytes = randomBytes(chance_, 133);
    std::vector<std::uint16_t> sums(133, 1000);
    PixelKernels::addRow(bytes.data(), sums.data(), sums.size());
    for (std::size_t i = 0; i < sums.size(); ++i)
        ASSERT_EQ(sums[i], 1000 + bytes[i]);
}

TEST_P(PixelKernelsTest, DivideEverySumOfFiveBytesByFive) {
    std::vector<std::uint16_t> sums(5 * 255 + 1);
    for (std::size_t i = 0; i < sums.size(); ++i)
        sums[i] = static_cast<std::uint16_t>(i);
    Bytes out(sums.size());
    PixelKernels::fifthOfRow(sums.data(), out.data(), sums.size());
    for (std::size_t i = 0; i < sums.size(); ++i)
        ASSERT_EQ(out[i], (i + 2) / 5);
}

TEST_P(PixelKernelsTest, BlendPremultipliedPixelsWithinALevel) {
    for (const int opacity : {0, 1, 128, 255, 256}) {
        for (std::size_t pixels = 0; pixels < 40; ++pixels) {
            Bytes source = randomBytes(chance_, pixels * 4);
            for (std::size_t i = 0; i < source.size(); ++i)
                source[i] = std::min(source[i], source[i | 3]);
            Bytes target = randomBytes(chance_, pixels * 4 + 1);
            const Bytes before = target;
            PixelKernels::blendOver(source.data(), static_cast<std::uint16_t>(opacity), target.data(),
                                    pixels);
            for (std::size_t i = 0; i < source.size(); ++i) {
                const double part = opacity / 256.0;
                const double exact = source[i] * part + before[i] * (1 - source[i | 3] * part / 255);
                ASSERT_NEAR(target[i], exact, 0.51);
            }
            ASSERT_EQ(target.back(), before.back()) << "written past the end";
        }
    }
}

TEST_P(PixelKernelsTest, LeaveWhatNothingIsBlendedOverAndReplaceWhatIsCovered) {
    Bytes levels(256 * 4);
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[i] = static_cast<std::uint8_t>(i / 4);
    Bytes target = levels;
    PixelKernels::blendOver(Bytes(levels.size()).data(), 256, target.data(), 256);
    EXPECT_EQ(target, levels);
    for (std::size_t i = 3; i < levels.size(); i += 4)
        levels[i] = 255;
    PixelKernels::blendOver(levels.data(), 256, target.data(), 256);
    EXPECT_EQ(target, levels);
}

TEST_P(PixelKernelsTest, MixAColorIntoRows) {
    const Bytes color = randomBytes(chance_, 4);
    for (std::size_t pixels = 0; pixels < 40; ++pixels) {
        Bytes target = randomBytes(chance_, pixels * 4 + 1);
        const Bytes before = target;
        PixelKernels::mixColor(color.data(), 12345, target.data(), pixels);
        for (std::size_t i = 0; i < pixels * 4; ++i)
            ASSERT_EQ(target[i], mixed(before[i], color[i % 4], 12345));
        ASSERT_EQ(target.back(), before.back()) << "written past the end";
    }
}

TEST_P(PixelKernelsTest, MixRowsByTheRedOfAMatte) {
    for (const std::size_t pixels : {0U, 1U, 63U, 64U, 65U, 150U}) {
        const Bytes a = randomBytes(chance_, pixels * 4);
        const Bytes b = randomBytes(chance_, pixels * 4);
        Bytes matte = randomBytes(chance_, pixels * 4);
        if (pixels > 1) matte[2] = 255, matte[6] = 0;
        Bytes out(pixels * 4 + 1, 77);
        PixelKernels::mixByMatte(a.data(), b.data(), matte.data(), out.data(), pixels);
        for (std::size_t i = 0; i < pixels * 4; ++i) {
            const double part = matte[i / 4 * 4 + 2] / 255.0;
            ASSERT_NEAR(out[i], a[i] + (b[i] - a[i]) * part, part == 0 || part == 1 ? 0 : 0.52);
        }
        ASSERT_EQ(out.back(), 77) << "written past the end";
    }
}

TEST_P(PixelKernelsTest, SumWeightedRows) {
    constexpr std::size_t count = 75;
    std::vector<std::vector<std::uint16_t>> rows(5, std::vector<std::uint16_t>(count));
    std::vector<const std::uint16_t*> taps;
    for (auto& row : rows) {
        for (std::uint16_t& value : row)
            value = static_cast<std::uint16_t>(chance_.whole(0, 255 * 256));
        row.front() = 255 * 256;
        taps.push_back(row.data());
    }
    const std::vector<std::uint16_t> weights{6000, 14000, 25536, 14000, 6000};
    std::vector<std::uint16_t> sums(count + 1, 77);
    Bytes bytes(count + 1, 77);
    PixelKernels::weightedSum(taps.data(), weights.data(), taps.size(), sums.data(), count);
    PixelKernels::weightedSumToBytes(taps.data(), weights.data(), taps.size(), bytes.data(), count);
    for (std::size_t i = 0; i < count; ++i) {
        double exact = 0;
        for (std::size_t tap = 0; tap < taps.size(); ++tap)
            exact += taps[tap][i] * double(weights[tap]) / 65536;
        ASSERT_NEAR(sums[i], exact, 3);
        ASSERT_NEAR(bytes[i], exact / 256, 0.52);
    }
    EXPECT_EQ(bytes[0], 255);
    EXPECT_EQ(sums.back(), 77);
    EXPECT_EQ(bytes.back(), 77);
}

INSTANTIATE_TEST_SUITE_P(OnEachInstructionSet, PixelKernelsTest,
                         ::testing::ValuesIn(hwy::SupportedAndGeneratedTargets()),
                         [](const auto& info) { return std::string(hwy::TargetName(info.param)); });

}  // namespace
}  // namespace tessaloom
