// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/HeldFrameReader.h"

#include <gtest/gtest.h>

#include "media/MovieWriter.h"
#include "support/Ffmpeg.h"
#include "support/MovieMaker.h"
#include "support/SamePixels.h"
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

TEST(HeldFrameReader, ReadsNoFurtherOnceStopped) {
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "a.mov";
    test::writeRecordedMovie(path, 32, 32, test::plainPictures(30, 30, test::white));
    std::stop_source stop;
    HeldFrameReader reader(MovieReader::open(path));
    EXPECT_NEAR(reader.frame(0.1, stop.get_token())->time(), 0.1, 1e-4);
    stop.request_stop();
    EXPECT_NEAR(reader.frame(0.9, stop.get_token())->time(), 0.1, 1e-4);
}

/// A movie of forty seconds whose pictures all differ, written or turned into files of several kinds.
class HeldFrameReaderJumpTest : public ::testing::Test {
  protected:
    static constexpr int width = 64;
    static constexpr int height = 48;
    static constexpr int pictureCount = 1200;

    static BgraImage shownAt(HeldFrameReader& reader, double time) {
        BgraImage picture;
        reader.frame(time)->toBgra(picture);
        return picture;
    }

    std::filesystem::path recorded() const {
        std::vector<test::PlainPicture> pictures;
        for (int n = 0; n < pictureCount; ++n) {
            const auto shade = static_cast<std::uint8_t>(n * 7);
            pictures.push_back({n / 30.0, {shade, static_cast<std::uint8_t>(n), 90}});
        }
        test::writeRecordedMovie(file("a.mov"), width, height, pictures);
        return file("a.mov");
    }

    std::filesystem::path transcoded(const char* name, const std::vector<std::string>& options) const {
        std::vector<std::string> arguments{"-i", recorded().string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.push_back(file(name).string());
        test::runFfmpeg(arguments);
        return file(name);
    }

    /// Whoever jumps from kept piece to kept piece sees what someone sees who reads everything.
    static void expectTheSamePictures(const std::filesystem::path& movie) {
        HeldFrameReader jumping(MovieReader::open(movie));
        HeldFrameReader reading(MovieReader::open(movie));
        double read = 0;
        for (const double time : {0.5, 9.99, 10.03, 12.9, 25.0, 25.01, 31.7, 39.8, 60.0}) {
            for (; read < time; read += 1)
                reading.frame(read);
            EXPECT_EQ(jumping.frame(time)->time(), reading.frame(time)->time()) << time;
            EXPECT_TRUE(test::samePixels(shownAt(jumping, time), shownAt(reading, time))) << time;
        }
    }

    std::filesystem::path file(const char* name) const { return folder_.path() / name; }

  private:
    test::TemporaryFolder folder_;
};

TEST_F(HeldFrameReaderJumpTest, ShowsTheSamePicturesOfARecording) {
    expectTheSamePictures(recorded());
}

TEST_F(HeldFrameReaderJumpTest, ShowsTheSamePicturesOfARecordingThatWasCutOff) {
    const auto movie = recorded();
    std::filesystem::resize_file(movie, std::filesystem::file_size(movie) * 9 / 10);
    expectTheSamePictures(movie);
}

TEST_F(HeldFrameReaderJumpTest, ShowsTheSamePicturesWhereTheyAreStoredOutOfOrder) {
    expectTheSamePictures(transcoded("a.mp4", {"-c:v", "libx264", "-g", "40", "-bf", "3"}));
}

TEST_F(HeldFrameReaderJumpTest, ShowsTheSamePicturesWhereOnlyTheFirstIsAKeyFrame) {
    expectTheSamePictures(transcoded("a.mkv", {"-c:v", "libx264", "-g", "5000", "-sc_threshold", "0"}));
}

TEST_F(HeldFrameReaderJumpTest, ShowsTheSamePicturesWhereSeekingIsInexact) {
    expectTheSamePictures(transcoded("a.ts", {"-c:v", "libx264", "-g", "90", "-bf", "2", "-muxdelay", "0"}));
}

TEST_F(HeldFrameReaderJumpTest, LeavesOutWhatIsCut) {
    const auto reader = MovieReader::open(recorded());
    reader->next();
    const auto frame = reader->skipTo(25.5);
    ASSERT_TRUE(frame);
    EXPECT_LE(frame->time(), 25.5);
    EXPECT_GT(frame->time(), 24.4);
}

}  // namespace
}  // namespace tessaloom
