// SPDX-License-Identifier: GPL-3.0-or-later
#include <cmath>
#include <fstream>
#include <system_error>

#include "export/ExporterFixture.h"
#include "media/MediaError.h"
#include "support/Ffmpeg.h"
#include "support/GifProbe.h"
#include "support/MovieProbe.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;

/// Recordings as other programs may have made them, and files that aren't as they should be.
class ExportSourceTest : public ExporterTest {
  protected:
    fs::path screen() const { return bundle_.file(TakeBundle::screenFile); }

    void expectSize(int wide, int high) const {
        const MovieFacts facts = probeMovie(destination_);
        EXPECT_EQ(facts.width, wide);
        EXPECT_EQ(facts.height, high);
    }
};

TEST_F(ExportSourceTest, AMovieThatIsToBeTurnedIsExportedUpright) {
    const auto lying = folder_.path() / "lying.mov";
    writeRecordedMovie(lying, 160, 90, std::vector<PlainPicture>{{0, black}, {0.5, white}, {1, white}});
    runFfmpeg({"-i", lying.string(), "-c", "copy", "-metadata:s:v", "rotate=90", screen().string()});
    auto upright = settings({{0, 1}});
    upright.aspect = 90.0 / 160;
    run(upright);
    expectSize(90, 160);
    EXPECT_EQ(brightFrames(destination_).front(), 30U);
}

TEST_F(ExportSourceTest, OddSidesBecomeEven) {
    runFfmpeg({"-f", "lavfi", "-i", "color=white:s=101x57:r=10:d=1", "-pix_fmt", "yuv444p", "-c:v", "libx264",
               screen().string()});
    auto odd = settings({{0, 1}});
    odd.aspect = 101.0 / 57;
    run(odd);
    expectSize(100, 56);
    EXPECT_EQ(brightFrames(destination_).size(), 60U);
}

TEST_F(ExportSourceTest, EveryPictureOfAnUnevenMovieHasItsOwnTime) {
    std::vector<PlainPicture> pictures{{0, black}};
    for (const double time : {0.1, 0.117, 0.4, 1.24, 1.9}) {
        pictures.push_back({time, white});
        pictures.push_back({time + 0.0125, black});
    }
    record(pictures);
    run(settings({{0, 2}}));
    // A frame each 1/60 s: none falls between 0.117 and 0.1295 s, and frame 75 is at 1.25 s.
    EXPECT_EQ(brightFrames(destination_), (std::vector<std::size_t>{6, 24, 75, 114}));
}

TEST_F(ExportSourceTest, OnePictureIsHeldToTheEnd) {
    record(std::vector<PlainPicture>{{0, white}});
    run(settings({{0, 1}}));
    EXPECT_EQ(brightFrames(destination_).size(), 60U);
    prepared(settings({{0, 1}})).exportGIF(destination_, [](double) {}, {});
    EXPECT_EQ(probeGif(destination_).frames.size(), 15U);
}

TEST_F(ExportSourceTest, SegmentsWithoutALengthCountAsNone) {
    recordFlash(1, 30, 0.5, 1);
    run(settings({{0.5, 0.5}}));
    EXPECT_EQ(probeMovie(destination_).packets.size(), 1U);
    run(settings({{0.2, 0.2}, {0.5, 1}, {0.9, 0.7}}));
    EXPECT_EQ(brightFrames(destination_).size(), 30U);
}

TEST_F(ExportSourceTest, ASpeedThatIsNoneCountsAsNormal) {
    recordFlash(1, 30, 0, 1);
    auto wanted = settings({{0, 1}});
    for (const double speed : {0.0, -2.0, std::nan("")}) {
        wanted.speed = speed;
        run(wanted);
        EXPECT_EQ(probeMovie(destination_).packets.size(), 60U) << speed;
        prepared(wanted).exportGIF(destination_, [](double) {}, {});
        EXPECT_EQ(probeGif(destination_).frames.size(), 15U) << speed;
    }
}

TEST_F(ExportSourceTest, MusicThatCannotBeReadIsNamedAndLeavesNothing) {
    recordFlash(1, 30, 0, 1);
    auto wanted = settings({{0, 1}});
    wanted.musicURL = folder_.path() / "music.m4a";
    for (const char* content : {"", "words, words, words"}) {
        std::ofstream(*wanted.musicURL) << content;
        try {
            run(wanted);
            FAIL() << "exported without its music";
        } catch (const MediaError& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with("\"music.m4a\" can't be read: "))
                << error.what();
        }
        EXPECT_EQ(filesAtDestination(), 0);
    }
}

TEST_F(ExportSourceTest, AFolderInTheDestinationsPlaceStays) {
    recordFlash(1, 30, 0, 1);
    fs::create_directory(destination_);
    std::ofstream(destination_ / "kept") << "words";
    EXPECT_THROW(run(settings({{0, 1}})), std::system_error);
    EXPECT_THROW(prepared(settings({{0, 1}})).exportGIF(destination_, [](double) {}, {}), std::system_error);
    EXPECT_TRUE(fs::exists(destination_ / "kept"));
    EXPECT_EQ(filesAtDestination(), 1);
}

TEST_F(ExportSourceTest, ARecordingThatVanishesMeanwhileIsExportedToItsEnd) {
    recordFlash(4, 30, 1, 2);
    Exporter exporter = prepared(settings({{0, 4}}));
    exporter.exportVideo(destination_, [&](double) { fs::remove_all(bundle_.url); }, {});
    EXPECT_EQ(brightFrames(destination_).size(), 60U);
}

}  // namespace
}  // namespace tessaloom::test
