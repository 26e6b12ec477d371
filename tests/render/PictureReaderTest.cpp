// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PictureReader.h"

#include <gtest/gtest.h>

#include "render/RandomFrame.h"
#include "support/SamePixels.h"

namespace tessaloom {
namespace {

constexpr AxisMapping across{10, 60, 0.1, 0.8};
constexpr AxisMapping down{5, 30, 0, 1};

BgraImage readBy(PictureReader& reader, BgraView picture, const AxisMapping& mapping, PixelSpan columns) {
    reader.prepare(picture, mapping, down, columns);
    RowScratch scratch;
    scratch.grow(picture.width, columns.length());
    BgraImage read(columns.length(), 40);
    for (int y = 0; y < read.height(); ++y)
        reader.readRow(y, columns, scratch, read.row(y));
    return read;
}

TEST(PictureReaderTest, KeepsNothingOfAnEarlierReading) {
    test::Chance chance(1);
    const BgraImage small = test::randomPicture(chance, 30, 20);
    const BgraImage large = test::randomPicture(chance, 90, 50);
    PictureReader used;
    const auto expectTheSame = [&](BgraView picture, const AxisMapping& mapping, PixelSpan columns) {
        PictureReader fresh;
        EXPECT_TRUE(test::samePixels(readBy(used, picture, mapping, columns),
                                     readBy(fresh, picture, mapping, columns)))
            << picture.width << " texels, columns " << columns.first << " to " << columns.last;
    };
    expectTheSame(small.view(), across, {10, 70});
    expectTheSame(small.view(), across, {12, 70});
    expectTheSame(small.view(), across, {12, 90});
    expectTheSame(large.view(), across, {12, 90});
    AxisMapping zoomed = across;
    zoomed.shownSize = 0.4;
    expectTheSame(large.view(), zoomed, {12, 90});
}

}  // namespace
}  // namespace tessaloom
