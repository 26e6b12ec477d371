// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/HeldFrameReader.h"

#include <gtest/gtest.h>

#include "support/MovieMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

TEST(HeldFrameReader, APictureHoldsUntilTheNextBegins) {
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "a.mov";
    const std::vector<test::PlainPicture> pictures{
        {0.5, test::pureRed}, {1, test::pureGreen}, {4, test::white}};
    test::writeRecordedMovie(path, 32, 32, pictures);
    HeldFrameReader reader(MovieReader::open(path));

    const std::pair<double, double> expected[] = {{0.5, 0.5},   {0.99, 0.5}, {0.9999995, 1}, {2.7, 1},
                                                  {3.99999, 1}, {4, 4},      {100, 4}};
    EXPECT_EQ(reader.frame(0), nullptr);
    EXPECT_EQ(reader.frame(0.4999), nullptr);
    for (const auto& [asked, shown] : expected) {
        const DecodedFrame* frame = reader.frame(asked);
        ASSERT_NE(frame, nullptr) << asked;
        EXPECT_NEAR(frame->time(), shown, 1e-9) << asked;
    }
}

TEST(HeldFrameReader, AMovieWithoutPicturesShowsNothing) {
    const test::TemporaryFolder folder;
    test::writeRecordedMovie(folder.path() / "a.mov", 32, 32, {});
    HeldFrameReader reader(MovieReader::open(folder.path() / "a.mov"));
    EXPECT_EQ(reader.frame(10), nullptr);
}

}  // namespace
}  // namespace tessaloom
