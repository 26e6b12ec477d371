// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/H264Bits.h"

#include <gtest/gtest.h>

#include <random>

namespace tessaloom {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(H264BitsTest, FieldsAreReadAsTheyWereWritten) {
    H264BitWriter writer;
    writer.bits(5, 3);
    writer.unsignedNumber(0);
    writer.unsignedNumber(4'000'000);
    writer.signedNumber(-17);
    writer.signedNumber(0);
    writer.signedNumber(25);
    writer.flag(true);
    writer.align(false);

    H264BitReader reader(writer.bytes());
    EXPECT_EQ(reader.bits(3), 5U);
    EXPECT_EQ(reader.unsignedNumber(), 0U);
    EXPECT_EQ(reader.unsignedNumber(), 4'000'000U);
    EXPECT_EQ(reader.signedNumber(), -17);
    EXPECT_EQ(reader.signedNumber(), 0);
    EXPECT_EQ(reader.signedNumber(), 25);
    EXPECT_TRUE(reader.flag());
    EXPECT_FALSE(reader.ranOut());
}

// The codes of table 9-2 in ITU-T H.264.
TEST(H264BitsTest, NumbersHaveTheStandardsCodes) {
    H264BitWriter writer;
    for (const std::uint32_t value : {0U, 1U, 2U, 3U, 7U})
        writer.unsignedNumber(value);
    writer.align(false);
    EXPECT_EQ(writer.bytes(), (Bytes{0b1'010'011'0, 0b0100'0001, 0b000'00000}));
}

TEST(H264BitsTest, BehindTheEndThereAreZeros) {
    const Bytes bytes{0xFF};
    H264BitReader reader(bytes);
    EXPECT_EQ(reader.bits(12), 0xFF0U);
    EXPECT_TRUE(reader.ranOut());
    // A damaged header ends, too.
    EXPECT_GT(reader.unsignedNumber(), 0U);
}

TEST(H264BitsTest, OverwritingChangesNothingElse) {
    Bytes bytes{0xFF, 0x00, 0xFF};
    overwriteBits(bytes, 6, 0b0110'1, 5);
    EXPECT_EQ(bytes, (Bytes{0b1111'1101, 0b1010'0000, 0xFF}));
}

TEST(H264BitsTest, UnitsComeBackFromAByteStreamWhateverTheyHold) {
    std::mt19937 random(7);
    std::vector<Bytes> units;
    Bytes stream;
    for (int n = 0; n < 200; ++n) {
        Bytes unit{static_cast<std::uint8_t>(1 + random() % 31)};
        // Small values, so that what looks like start codes and emulation prevention is everywhere.
        for (auto left = random() % 60; left > 0; --left)
            unit.push_back(static_cast<std::uint8_t>(random() % 5));
        unit.push_back(0x80);
        units.push_back(unit);
        appendToByteStream(stream, unit);
    }
    const auto found = unitsOfByteStream(stream);
    ASSERT_EQ(found.size(), units.size());
    for (std::size_t n = 0; n < units.size(); ++n)
        EXPECT_EQ(withoutEmulationPrevention(found[n]), units[n]) << n;
}

TEST(H264BitsTest, StartCodesMayBeLongOrShort) {
    const Bytes stream{0, 0, 0, 1, 7, 9, 0, 0, 1, 8, 0, 0, 0, 0, 1, 5};
    const auto units = unitsOfByteStream(stream);
    ASSERT_EQ(units.size(), 3U);
    EXPECT_EQ(Bytes(units[0].begin(), units[0].end()), (Bytes{7, 9}));
    EXPECT_EQ(Bytes(units[1].begin(), units[1].end()), Bytes{8});
    EXPECT_EQ(Bytes(units[2].begin(), units[2].end()), Bytes{5});
}

}  // namespace
}  // namespace tessaloom
