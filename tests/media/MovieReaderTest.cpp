// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/MovieReader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "media/MediaError.h"
#include "media/MovieWriter.h"
#include "support/MovieMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using test::Bgr;

constexpr int width = 64;
constexpr int height = 48;

void expectColor(const DecodedFrame& frame, Bgr expected) {
    BgraImage image;
    frame.toBgra(image);
    ASSERT_EQ(image.width(), frame.width());
    ASSERT_EQ(image.height(), frame.height());
    for (const auto& [x, y] : {std::pair(0, 0), std::pair(image.width() - 1, image.height() - 1)}) {
        const std::uint8_t* pixel = image.row(y) + std::ptrdiff_t{4} * x;
        EXPECT_NEAR(pixel[0], expected.blue, 4);
        EXPECT_NEAR(pixel[1], expected.green, 4);
        EXPECT_NEAR(pixel[2], expected.red, 4);
        EXPECT_EQ(pixel[3], 255);
    }
}

/// Without it, pictures are shown as much later as the first of them is decoded earlier.
void hideEditList(const std::filesystem::path& movie) {
    std::fstream stream(movie, std::ios::binary | std::ios::in | std::ios::out);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    const auto place = bytes.find("edts");
    ASSERT_NE(place, std::string::npos);
    stream.seekp(static_cast<std::streamoff>(place));
    stream << "free";
}

class MovieReaderTest : public ::testing::Test {
  protected:
    std::filesystem::path file(const char* name) const { return folder_.path() / name; }

    /// Ten seconds: black for seven, then green, 30 pictures a second.
    std::filesystem::path tenSeconds() const {
        auto pictures = test::plainPictures(300, 30, test::black);
        for (auto& picture : pictures)
            if (picture.time >= 7) picture.color = test::pureGreen;
        test::writeRecordedMovie(file("ten.mov"), width, height, pictures);
        return file("ten.mov");
    }

  private:
    test::TemporaryFolder folder_;
};

TEST_F(MovieReaderTest, GivesBackTimesSizesAndColors) {
    const std::vector<test::PlainPicture> pictures{{0, test::pureRed},
                                                   {0.5, test::pureGreen},
                                                   {3.0, test::pureBlue},
                                                   {3.02, test::white},
                                                   {8.0, {40, 120, 200}}};
    test::writeRecordedMovie(file("a.mov"), width, height, pictures);
    const auto reader = MovieReader::open(file("a.mov"));
    EXPECT_EQ(reader->naturalWidth(), width);
    EXPECT_EQ(reader->naturalHeight(), height);
    for (const auto& picture : pictures) {
        const auto frame = reader->next();
        ASSERT_TRUE(frame);
        EXPECT_NEAR(frame->time(), picture.time, 1e-5);
        expectColor(*frame, picture.color);
    }
    EXPECT_FALSE(reader->next());
    EXPECT_FALSE(reader->next());
}

TEST_F(MovieReaderTest, FramesOutliveTheirReader) {
    test::writeRecordedMovie(file("a.mov"), width, height,
                             std::vector{test::PlainPicture{0, test::pureBlue}});
    const auto frame = MovieReader::open(file("a.mov"))->next();
    ASSERT_TRUE(frame);
    expectColor(*frame, test::pureBlue);
}

TEST_F(MovieReaderTest, ARangeStartsCloseBeforeAndEndsBeforeItsEnd) {
    const auto reader = MovieReader::open(tenSeconds(), MovieReader::TimeRange{7.02, 7.5});
    std::vector<DecodedFrame> frames;
    while (auto frame = reader->next())
        frames.push_back(*frame);
    ASSERT_FALSE(frames.empty());
    // One second is the longest way from a key frame.
    EXPECT_GT(frames.front().time(), 5.9);
    EXPECT_LE(frames.front().time(), 7.02);
    EXPECT_NEAR(frames.back().time(), 7.5 - 1.0 / 30, 1e-4);
    expectColor(frames.back(), test::pureGreen);
}

TEST_F(MovieReaderTest, ARangeThatStartsInAPauseBeginsWithThePictureInForce) {
    const std::vector<test::PlainPicture> pictures{
        {0, test::pureRed}, {2, test::pureGreen}, {9, test::pureBlue}};
    test::writeRecordedMovie(file("a.mov"), width, height, pictures);
    const auto frame = MovieReader::open(file("a.mov"), MovieReader::TimeRange{6, 10})->next();
    ASSERT_TRUE(frame);
    EXPECT_NEAR(frame->time(), 2, 1e-5);
}

TEST_F(MovieReaderTest, ARangeBeginsWithThePictureInForceAlsoWherePicturesAreStoredOutOfOrder) {
    auto video = H264Settings::capture(width, height);
    video.options = {{"preset", "superfast"}, {"bf", "3"}, {"b_strategy", "0"}, {"forced-idr", "1"}};
    const auto writer =
        MovieWriter::create(file("a.mp4"), {.container = MovieWriter::Container::mp4, .video = video});
    for (int n = 0; n < 90; ++n) {
        const auto level = static_cast<std::uint8_t>(2 * n);
        writer->appendVideo(test::plainYuv(width, height, {level, level, level}), n / 30.0, 1 / 30.0);
    }
    writer->finish();
    for (const bool edited : {true, false}) {
        if (!edited) hideEditList(file("a.mp4"));
        for (int n = 6; n < 90; ++n) {
            const double start = n / 30.0;
            const auto first = MovieReader::open(file("a.mp4"), {{start, start + 1.0 / 60}})->next();
            ASSERT_TRUE(first) << start;
            EXPECT_LE(first->time(), start + 1e-6);
            EXPECT_GE(first->time(), start - 1.2);
        }
    }
}

TEST_F(MovieReaderTest, ATornTailEndsTheMovieQuietly) {
    const auto path = tenSeconds();
    std::filesystem::resize_file(path, std::filesystem::file_size(path) * 6 / 10);
    const auto reader = MovieReader::open(path);
    double last = 0;
    int count = 0;
    while (const auto frame = reader->next()) {
        last = frame->time();
        expectColor(*frame, last < 6.99 ? test::black : test::pureGreen);
        ++count;
    }
    EXPECT_GT(last, 3);
    EXPECT_LT(last, 9);
    EXPECT_NEAR(count, last * 30, 2);
}

TEST_F(MovieReaderTest, DurationIsTheEndOfTheLastPicture) {
    EXPECT_NEAR(MovieReader::scanDuration(tenSeconds()), 299.0 / 30 + 1.0 / 60, 1e-4);
}

TEST_F(MovieReaderTest, DurationOfAnMp4IsTheEndOfTheLastPicture) {
    const auto writer = MovieWriter::create(
        file("a.mp4"),
        {.container = MovieWriter::Container::mp4, .video = H264Settings::exported(width, height, 500'000)});
    for (int n = 0; n < 60; ++n)
        writer->appendVideo(test::plainYuv(width, height, test::pureRed), n / 60.0, 1 / 60.0);
    writer->finish();
    EXPECT_NEAR(MovieReader::scanDuration(file("a.mp4")), 1.0, 1e-6);
}

TEST_F(MovieReaderTest, SaysWhyAFileCannotBeOpened) {
    try {
        MovieReader::open(file("missing.mov"));
        FAIL() << "opened a file that isn't there";
    } catch (const MediaError& error) {
        EXPECT_NE(std::string(error.what()).find("No such file or directory"), std::string::npos)
            << error.what();
    }
}

TEST_F(MovieReaderTest, AFileThatIsNoMovieIsRefused) {
    std::ofstream(file("text.mov")) << "These are words and no pictures at all, and quite many of them.";
    EXPECT_THROW(MovieReader::open(file("text.mov")), MediaError);
    std::ofstream(file("empty.mov")).flush();
    EXPECT_THROW(MovieReader::open(file("empty.mov")), MediaError);
}

TEST_F(MovieReaderTest, ASoundFileHasNoVideoTrack) {
    test::writeSoundFile(file("sound.wav"));
    EXPECT_THROW(MovieReader::open(file("sound.wav")), NoVideoTrack);
    EXPECT_THROW(MovieReader::scanDuration(file("sound.wav")), NoVideoTrack);
}

}  // namespace
}  // namespace tessaloom
