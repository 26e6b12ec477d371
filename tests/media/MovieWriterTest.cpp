// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/MovieWriter.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "media/AudioReader.h"
#include "media/MediaError.h"
#include "media/MovieReader.h"
#include "support/MovieMaker.h"
#include "support/MovieProbe.h"
#include "support/SoundMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

constexpr int width = 160;
constexpr int height = 90;
constexpr double frame = 1.0 / 60.0;

MovieWriter::Settings recorded() {
    return {.container = MovieWriter::Container::fragmentedMovie,
            .video = H264Settings::capture(width, height)};
}

MovieWriter::Settings exported(std::int64_t bitRate = 500'000) {
    return {.container = MovieWriter::Container::mp4,
            .video = H264Settings::exported(width, height, bitRate)};
}

YuvImage noise(unsigned seed) {
    YuvImage image(width, height);
    std::mt19937 generator(seed);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.plane(0)[y * image.stride(0) + x] = static_cast<std::uint8_t>(16 + generator() % 220);
    return image;
}

void appendNoise(MovieWriter& writer, int firstFrame, int frameCount) {
    for (int n = firstFrame; n < firstFrame + frameCount; ++n)
        writer.appendVideo(noise(static_cast<unsigned>(n)), n * frame, frame);
}

/// Runs `body` in a child process and gives its wait status.
template <typename Body>
int statusOfChild(Body body) {
    const pid_t child = fork();
    if (child == 0) {
        body();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

int decodedFrames(const std::filesystem::path& path) {
    const auto reader = MovieReader::open(path);
    int count = 0;
    while (reader->next())
        ++count;
    return count;
}

void expectTimes(const std::vector<double>& actual, const std::vector<double>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i)
        EXPECT_NEAR(actual[i], expected[i], 1e-5) << i;
}

class MovieWriterTest : public ::testing::Test {
  protected:
    std::filesystem::path file(const char* name) const { return folder_.path() / name; }

  private:
    test::TemporaryFolder folder_;
};

TEST_F(MovieWriterTest, KeepsTheTimesOfPicturesThatComeAfterPauses) {
    const std::vector<double> times{0, 0.016, 0.05, 5.25, 9.5, 9.517, 12.0, 30.0};
    const auto writer = MovieWriter::create(file("a.mov"), recorded());
    for (const double time : times) {
        writer->appendVideo(test::plainYuv(width, height, test::pureRed), time, frame);
        if (time > 1) writer->flush();
    }
    writer->finish();
    expectTimes(test::probeMovie(file("a.mov")).times(), times);
}

TEST_F(MovieWriterTest, ARecordingSurvivesAKilledProcessUpToItsLastFlush) {
    const auto path = file("killed.mov");
    const int status = statusOfChild([&path] {
        const auto writer = MovieWriter::create(path, recorded());
        appendNoise(*writer, 0, 30);
        writer->flush();
        appendNoise(*writer, 30, 60);
        writer->flush();
        appendNoise(*writer, 90, 20);
        kill(getpid(), SIGKILL);
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(decodedFrames(path), 90);
    EXPECT_NEAR(MovieReader::scanDuration(path), 1.5, 1e-4);
}

TEST_F(MovieWriterTest, TheFirstFlushAloneAlreadySurvives) {
    const auto path = file("killed.mov");
    statusOfChild([&path] {
        const auto writer = MovieWriter::create(path, recorded());
        appendNoise(*writer, 0, 1);
        writer->flush();
        kill(getpid(), SIGKILL);
    });
    EXPECT_EQ(decodedFrames(path), 1);
}

TEST_F(MovieWriterTest, FlushingWithoutNewPicturesWritesNothing) {
    const auto writer = MovieWriter::create(file("a.mov"), recorded());
    writer->flush();
    appendNoise(*writer, 0, 5);
    writer->flush();
    const auto size = std::filesystem::file_size(file("a.mov"));
    writer->flush();
    EXPECT_EQ(std::filesystem::file_size(file("a.mov")), size);
}

TEST_F(MovieWriterTest, CutsAFragmentAfterFourSecondsUnasked) {
    const auto writer = MovieWriter::create(file("a.mov"), recorded());
    for (int n = 0; n < 10; ++n)
        writer->appendVideo(noise(0), n, frame);
    writer->finish();
    const auto boxes = test::topLevelBoxes(file("a.mov"));
    EXPECT_EQ(std::ranges::count(boxes, "moof"), 3);
}

TEST_F(MovieWriterTest, ARecordingHasAKeyFrameAtLeastEachSecond) {
    const auto writer = MovieWriter::create(file("a.mov"), recorded());
    const YuvImage still = noise(1);
    for (int n = 0; n < 200; ++n)
        writer->appendVideo(still, n * frame, frame);
    writer->finish();

    double lastKey = 0;
    int keys = 0;
    for (const auto& packet : test::probeMovie(file("a.mov")).packets) {
        if (!packet.key) continue;
        EXPECT_LE(packet.time - lastKey, 1.0 + 1e-6);
        lastKey = packet.time;
        ++keys;
    }
    EXPECT_EQ(keys, 4);
}

TEST_F(MovieWriterTest, ARecordingWithoutPicturesIsAnEmptyMovie) {
    MovieWriter::create(file("a.mov"), recorded())->finish();
    EXPECT_EQ(decodedFrames(file("a.mov")), 0);
    EXPECT_EQ(MovieReader::scanDuration(file("a.mov")), 0);
}

TEST_F(MovieWriterTest, BothContainersSayBt709Limited) {
    for (const auto& settings : {recorded(), exported()}) {
        const auto path = file("tagged");
        const auto writer = MovieWriter::create(path, settings);
        appendNoise(*writer, 0, 10);
        writer->finish();
        EXPECT_EQ(test::probeMovie(path).colors, "bt709 bt709 bt709 tv");
        // The stream carries the tags itself; this is the container's own copy.
        EXPECT_TRUE(test::fileContains(path, "colrnclx") || test::fileContains(path, "colrnclc"));
    }
}

TEST_F(MovieWriterTest, AnMp4HasItsIndexInFrontAndExactTimes) {
    const auto writer = MovieWriter::create(file("a.mp4"), exported());
    appendNoise(*writer, 5, 50);
    writer->finish();

    const auto boxes = test::topLevelBoxes(file("a.mp4"));
    EXPECT_LT(std::ranges::find(boxes, "moov"), std::ranges::find(boxes, "mdat"));
    const test::MovieFacts facts = test::probeMovie(file("a.mp4"));
    EXPECT_EQ(facts.profile, "High");
    ASSERT_EQ(facts.packets.size(), 50U);
    for (std::size_t i = 0; i < 50; ++i)
        EXPECT_NEAR(facts.packets[i].time, static_cast<double>(i + 5) / 60, 1e-9) << i;
}

TEST_F(MovieWriterTest, AnMp4KeepsToTheBitRateAskedFor) {
    const auto writer = MovieWriter::create(file("a.mp4"), exported(1'000'000));
    appendNoise(*writer, 0, 600);
    writer->finish();
    EXPECT_NEAR(test::probeMovie(file("a.mp4")).bitRate, 1e6, 2e5);
}

TEST_F(MovieWriterTest, SaysWhyAFileCannotBeMade) {
    try {
        MovieWriter::create(file("no such folder") / "a.mov", recorded());
        FAIL() << "made a file in a folder that isn't there";
    } catch (const MediaError& error) {
        EXPECT_NE(std::string(error.what()).find("No such file or directory"), std::string::npos)
            << error.what();
    }
}

TEST_F(MovieWriterTest, AFullDiskIsReportedAndWhatWasFlushedPlays) {
    const auto path = file("full.mov");
    constexpr int reported = 7;
    const int status = statusOfChild([&path] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{300'000, 300'000};
        setrlimit(RLIMIT_FSIZE, &limit);
        const auto writer = MovieWriter::create(path, recorded());
        try {
            for (int n = 0; n < 600; n += 30) {
                appendNoise(*writer, n, 30);
                writer->flush();
            }
        } catch (const MediaError& error) {
            if (std::string(error.what()).find("File too large") != std::string::npos) _exit(reported);
        }
    });
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), reported);
    const int frames = decodedFrames(path);
    EXPECT_GT(frames, 0);
    EXPECT_LT(frames, 600);
}

/// A texture that moves by `n` pixels.
YuvImage texture(int n) {
    YuvImage image(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.plane(0)[y * image.stride(0) + x] =
                static_cast<std::uint8_t>(128 + 60 * std::sin((x + n) * 0.37) * std::cos((y - n) * 0.23));
    return image;
}

/// The bytes of a second of that texture, at a bit rate that it can't use up.
std::uintmax_t bytesOfTexture(const std::filesystem::path& path, const H264Settings& video,
                              PictureMotion motion) {
    const auto writer = MovieWriter::create(path, {.container = MovieWriter::Container::mp4, .video = video});
    for (int n = 0; n < 120; ++n)
        writer->appendVideo(texture(motion == PictureMotion::moving ? n : 0), n * frame, frame, motion);
    writer->finish();
    return std::filesystem::file_size(path);
}

/// PSNR in decibels between a grey picture and what became of it.
double likeness(const DecodedFrame& frame, const YuvImage& meant) {
    BgraImage shown;
    frame.toBgra(shown);
    double squares = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double grey = (meant.plane(0)[y * meant.stride(0) + x] - 16) * 255.0 / 219;
            squares += std::pow(shown.row(y)[4 * x] - grey, 2);
        }
    }
    return 10 * std::log10(255.0 * 255.0 * width * height / std::max(squares, 1.0));
}

TEST_F(MovieWriterTest, BitsAreNotSpentOnWhatNobodySees) {
    const H264Settings limited = H264Settings::exported(width, height, 20'000'000);
    H264Settings unlimited = limited;
    unlimited.finestQuantisers.reset();
    EXPECT_LT(2 * bytesOfTexture(file("limited.mp4"), limited, PictureMotion::moving),
              bytesOfTexture(file("unlimited.mp4"), unlimited, PictureMotion::moving));

    const auto reader = MovieReader::open(file("limited.mp4"));
    for (int n = 0; const auto picture = reader->next(); ++n)
        EXPECT_GT(likeness(*picture, texture(n)), 38) << n;
}

TEST_F(MovieWriterTest, StillPicturesAreFinerThanMovingOnes) {
    const H264Settings settings = H264Settings::exported(width, height, 20'000'000);
    bytesOfTexture(file("still.mp4"), settings, PictureMotion::still);
    const auto reader = MovieReader::open(file("still.mp4"));
    double last = 0;
    while (const auto picture = reader->next())
        last = likeness(*picture, texture(0));
    EXPECT_GT(last, 48);
}

TEST_F(MovieWriterTest, ARecordingsFirstPictureIsFineSinceItMayStayTheOnlyOne) {
    const auto likenessOfFirst = [&](const H264Settings& video) {
        const auto writer = MovieWriter::create(
            file("first.mov"), {.container = MovieWriter::Container::fragmentedMovie, .video = video});
        writer->appendVideo(noise(1), 0, frame);
        writer->finish();
        return likeness(*MovieReader::open(file("first.mov"))->next(), noise(1));
    };
    const H264Settings recorded = H264Settings::capture(width, height);
    H264Settings plain = recorded;
    plain.finerKeyFrames = 0;
    EXPECT_GT(likenessOfFirst(recorded), likenessOfFirst(plain) + 2);
}

TEST_F(MovieWriterTest, ExportsHaveAKeyFrameEvery250Pictures) {
    const auto writer = MovieWriter::create(file("a.mp4"), exported());
    for (int n = 0; n < 510; ++n)
        writer->appendVideo(texture(n / 100), n * frame, frame);
    writer->finish();
    const auto packets = test::probeMovie(file("a.mp4")).packets;
    for (std::size_t n = 0; n < packets.size(); ++n)
        EXPECT_EQ(packets[n].key, n % 250 == 0) << n;
}

TEST(H264SettingsTest, TheCommandLineNamesTheSameOptions) {
    EXPECT_EQ(H264Settings::exported(1920, 1080, 12'441'600).commandLine(),
              "-c:v libx264 -pix_fmt yuv420p -preset:v veryfast -b:v 12441600 -profile:v high "
              "-color_primaries:v bt709 -color_trc:v bt709 -colorspace:v bt709 -color_range:v tv");
}

TEST_F(MovieWriterTest, SoundAndPicturesStartTogether) {
    MovieWriter::Settings settings = exported();
    settings.sound = AacSettings{.sampleRate = soundRate};
    const auto writer = MovieWriter::create(file("a.mp4"), settings);
    const std::vector<double> times{0, 1, 2.5};
    test::MonoSource source(test::beeps(3, times));
    for (int n = 0; n < 180; ++n) {
        writer->appendVideo(test::plainYuv(width, height, test::pureRed), n * frame, frame);
        writer->appendSound(interleaved(test::pull(source, soundRate / 60)));
    }
    writer->finish();

    EXPECT_EQ(test::probeMovie(file("a.mp4")).times().front(), 0);
    const auto facts = test::probeSound(file("a.mp4"));
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->codec, "aac");
    EXPECT_EQ(facts->rate, 44'100);
    EXPECT_EQ(facts->channels, 2);
    EXPECT_NEAR(facts->firstPacketTime, -1024.0 / soundRate, 1e-4);
    EXPECT_NEAR(facts->startTime, 0, 1e-4);
    EXPECT_NEAR(facts->duration, 3, 1e-3);
    // FFmpeg's own program must hear it where we put it.
    test::convertSound(file("a.mp4"), file("heard.wav"), {"-vn"});
    std::vector<StereoSample> heard(3 * soundRate);
    AudioReader::open(file("heard.wav"))->read(0, heard);
    const auto found = test::onsets(heard);
    ASSERT_EQ(found.size(), times.size());
    for (std::size_t i = 0; i < times.size(); ++i)
        EXPECT_NEAR(found[i], times[i], 0.001) << i;
}

TEST_F(MovieWriterTest, SoundIsEncodedAt128KilobitsASecond) {
    MovieWriter::Settings settings = exported();
    settings.sound = AacSettings{.sampleRate = soundRate};
    const auto writer = MovieWriter::create(file("a.mp4"), settings);
    std::mt19937 generator(1);
    std::vector<StereoSample> sound(10 * soundRate);
    for (StereoSample& sample : sound)
        sample = {static_cast<float>(generator()) / 6e9F, static_cast<float>(generator()) / 6e9F};
    writer->appendVideo(test::plainYuv(width, height, test::pureRed), 0, 10);
    writer->appendSound(interleaved(sound));
    writer->finish();
    EXPECT_NEAR(test::probeSound(file("a.mp4"))->bitRate, 128'000, 8'000);
}

}  // namespace
}  // namespace tessaloom
