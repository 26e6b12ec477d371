// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/MovieReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "media/ColorConversion.h"
#include "media/MediaError.h"
#include "media/MovieWriter.h"
#include "support/FailingFile.h"
#include "support/LogLines.h"
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

void copyRect(const BgraImage& source, BgraImage& target, int left, int top) {
    for (int y = 0; y < source.height(); ++y)
        std::copy_n(source.row(y), std::ptrdiff_t{4} * source.width(),
                    target.row(top + y) + std::ptrdiff_t{4} * left);
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

TEST_F(MovieReaderTest, ATornTailIsToldOfOnce) {
    const auto path = tenSeconds();
    std::filesystem::resize_file(path, std::filesystem::file_size(path) * 6 / 10);
    const test::LogLines log;
    const auto reader = MovieReader::open(path);
    while (reader->next()) {
    }
    EXPECT_EQ(log.count("\"ten.mov\" was cut off. What is left of it ends at "), 1);
}

TEST_F(MovieReaderTest, OfAWholeMovieThereIsNothingToTell) {
    const test::LogLines log;
    const auto reader = MovieReader::open(tenSeconds());
    while (reader->next()) {
    }
    EXPECT_FALSE(log.contains("cut off"));
}

TEST_F(MovieReaderTest, ADiskThatFailsIsNoEnd) {
    const test::FailingFile failing(tenSeconds(), std::filesystem::file_size(tenSeconds()) * 6 / 10);
    const auto reader = MovieReader::open(failing.name());
    try {
        while (reader->next()) {
        }
        FAIL() << "took it for the end";
    } catch (const UnreadableMovie& error) {
        EXPECT_STREQ(error.what(), "\"mem\" can't be read: Input/output error.");
    }
    EXPECT_THROW(MovieReader::scanDuration(failing.name()), UnreadableMovie);
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

/// Says in the movie's header that its pictures are to be turned by this matrix (a, b, c, d of the file
/// format, whole numbers).
void setMatrix(const std::filesystem::path& movie, std::array<int, 4> matrix) {
    std::fstream stream(movie, std::ios::binary | std::ios::in | std::ios::out);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    const auto header = bytes.find("tkhd");
    ASSERT_NE(header, std::string::npos);
    constexpr std::array<std::size_t, 4> places{0, 4, 12, 16};
    for (std::size_t i = 0; i < places.size(); ++i) {
        stream.seekp(static_cast<std::streamoff>(header + 44 + places[i]));
        for (const int shift : {24, 16, 8, 0})
            stream.put(static_cast<char>(matrix[i] * 0x10000 >> shift));
    }
}

/// The corner colours of a picture whose corners are black, red, green, blue from the top left by rows.
std::string cornersOf(const BgraImage& image) {
    std::string corners;
    for (const int y : {2, image.height() - 3})
        for (const int x : {2, image.width() - 3}) {
            const std::uint8_t* pixel = image.row(y) + std::ptrdiff_t{4} * x;
            corners += pixel[2] > 128 ? 'r' : pixel[1] > 128 ? 'g' : pixel[0] > 128 ? 'b' : '-';
        }
    return corners;
}

TEST_F(MovieReaderTest, PicturesAreTurnedAsTheMovieSays) {
    BgraImage picture = test::plainImage(width, height, test::black);
    copyRect(test::plainImage(width / 2, height / 2, test::pureRed), picture, width / 2, 0);
    copyRect(test::plainImage(width / 2, height / 2, test::pureGreen), picture, 0, height / 2);
    copyRect(test::plainImage(width / 2, height / 2, test::pureBlue), picture, width / 2, height / 2);
    YuvImage yuv(width, height);
    bgraToYuv(picture.view(), yuv, 0, 0);
    struct Case {
        std::array<int, 4> matrix;
        const char* corners;
        bool upright;
    };
    // In the file's matrix x' = a x + c y and y' = b x + d y, with y downwards.
    const Case cases[] = {{{1, 0, 0, 1}, "-rgb", false},
                          {{0, 1, -1, 0}, "g-br", true},
                          {{-1, 0, 0, -1}, "bgr-", false},
                          {{0, -1, 1, 0}, "rb-g", true}};
    for (const auto& [matrix, corners, upright] : cases) {
        const auto writer = MovieWriter::create(
            file("turned.mp4"),
            {.container = MovieWriter::Container::mp4, .video = H264Settings::capture(width, height)});
        writer->appendVideo(yuv, 0, 1);
        writer->finish();
        setMatrix(file("turned.mp4"), matrix);
        const auto reader = MovieReader::open(file("turned.mp4"));
        BgraImage shown;
        reader->next()->toBgra(shown);
        EXPECT_EQ(cornersOf(shown), corners);
        EXPECT_EQ(shown.width(), upright ? height : width) << corners;
        EXPECT_EQ(reader->naturalWidth(), shown.width());
        EXPECT_EQ(reader->naturalHeight(), shown.height());
    }
}

}  // namespace
}  // namespace tessaloom
