// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PixelKernels.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>

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

INSTANTIATE_TEST_SUITE_P(OnEachInstructionSet, PixelKernelsTest,
                         ::testing::ValuesIn(hwy::SupportedAndGeneratedTargets()),
                         [](const auto& info) { return std::string(hwy::TargetName(info.param)); });

}  // namespace
}  // namespace tessaloom
