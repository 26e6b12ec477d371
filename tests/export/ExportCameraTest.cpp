// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <fstream>

#include "export/ExporterFixture.h"
#include "media/AudioReader.h"
#include "media/MediaError.h"
#include "support/MovieProbe.h"
#include "support/SoundMaker.h"

namespace tessaloom::test {
namespace {

/// Places of the picture, as fractions of its width.
constexpr double camera = 0.2;
constexpr double screen = 0.8;

class ExportCameraTest : public ExporterTest {
  protected:
    ExportCameraTest() {
        edit_.webcam.enabled = true;
        edit_.cursorVisible = false;
    }

    void film(std::string_view file, std::span<const PlainPicture> pictures) const {
        writeRecordedMovie(bundle_.file(file), 64, 48, pictures);
    }

    /// The camera's file begins this much later than the recording.
    void startCameraAt(double offset) const {
        EventLog log;
        log.webcamStartOffset = offset;
        bundle_.write(log);
    }

    void exportRange(double start, double end) {
        bundle_.write(edit_);
        auto wanted = settings({{start, end}});
        wanted.webcam = edit_.webcam;
        run(wanted);
    }

    EditParams edit_;
};

TEST_F(ExportCameraTest, TheBubbleShowsTheCameraAtItsOwnTime) {
    record(std::vector<PlainPicture>{{0, black}});
    film(TakeBundle::webcamFile, std::vector<PlainPicture>{{0, black}, {1, white}, {1.1, black}});
    startCameraAt(0.25);
    exportRange(0, 2);
    EXPECT_EQ(brightFrames(destination_, camera), (std::vector<std::size_t>{75, 76, 77, 78, 79, 80}));
    EXPECT_TRUE(brightFrames(destination_, screen).empty());
}

TEST_F(ExportCameraTest, ACameraThatStartedBeforeTheScreenIsShownFromItsMiddle) {
    record(std::vector<PlainPicture>{{0, black}});
    film(TakeBundle::webcamFile, std::vector<PlainPicture>{{0, white}, {0.5, black}, {1, white}});
    startCameraAt(-0.5);
    exportRange(0, 1);
    EXPECT_EQ(brightFrames(destination_, camera).size(), 30U);
    EXPECT_EQ(brightFrames(destination_, camera).front(), 30U);
}

TEST_F(ExportCameraTest, ACameraThatEndsEarlyFreezes) {
    record(std::vector<PlainPicture>{{0, black}});
    film(TakeBundle::webcamFile, std::vector<PlainPicture>{{0, black}, {0.5, white}});
    exportRange(0, 2);
    EXPECT_EQ(brightFrames(destination_, camera).size(), 90U);
}

TEST_F(ExportCameraTest, ANewCameraPictureIsDrawnAndAHeldOneIsNot) {
    record(std::vector<PlainPicture>{{0, black}});
    film(TakeBundle::webcamFile, std::vector<PlainPicture>{{0, black}, {0.5, white}, {1, black}});
    exportRange(0, 2);
    EXPECT_EQ(drawn_, 3);
}

TEST_F(ExportCameraTest, AHiddenCameraDrawsNothing) {
    edit_.cameraHiddenRanges = {{0, 2}};
    EventLog log;
    log.cursorSamples = {{.pts = 2, .x = 0, .y = 0}};
    bundle_.write(log);
    record(std::vector<PlainPicture>{{0, black}});
    film(TakeBundle::webcamFile, plainPictures(60, 30, white));
    exportRange(0.5, 1.5);
    EXPECT_TRUE(brightFrames(destination_, camera).empty());
    EXPECT_EQ(drawn_, 1);
}

TEST_F(ExportCameraTest, WithoutItsFileThereIsNoBubble) {
    record(std::vector<PlainPicture>{{0, white}});
    exportRange(0, 1);
    EXPECT_EQ(brightFrames(destination_, camera).size(), 60U);
}

TEST_F(ExportCameraTest, ACameraThatIsSwitchedOffIsNotRead) {
    edit_.webcam.enabled = false;
    record(std::vector<PlainPicture>{{0, black}});
    std::ofstream(bundle_.file(TakeBundle::webcamFile)) << "no movie";
    exportRange(0, 1);
    EXPECT_EQ(probeMovie(destination_).packets.size(), 60U);
}

TEST_F(ExportCameraTest, TheMatteIsReadAtTheCamerasTimeWhereTheBackgroundIsBlurred) {
    record(std::vector<PlainPicture>{{0, white}});
    film(TakeBundle::webcamFile, std::vector<PlainPicture>{{0, black}});
    film(TakeBundle::matteFile, std::vector<PlainPicture>{{0, black}, {0.5, white}});
    startCameraAt(0.25);
    const auto frameIsBright = [this](double blur, std::size_t index) {
        edit_.webcam.blur = blur;
        exportRange(0, 1);
        const auto frames = brightFrames(destination_, camera, 0.2);
        return std::ranges::find(frames, index) != frames.end();
    };
    EXPECT_FALSE(frameIsBright(0.5, 44));
    EXPECT_TRUE(frameIsBright(0.5, 45));
    EXPECT_FALSE(frameIsBright(0.001, 45));
}

TEST_F(ExportCameraTest, BlurWithoutAMatteChangesNothing) {
    edit_.webcam.blur = 1;
    record(std::vector<PlainPicture>{{0, black}});
    film(TakeBundle::webcamFile, std::vector<PlainPicture>{{0, white}});
    exportRange(0, 1);
    EXPECT_EQ(brightFrames(destination_, camera).size(), 60U);
}

TEST_F(ExportCameraTest, ARangeThatTheOffsetTurnsAroundCannotBeRead) {
    record(std::vector<PlainPicture>{{0, black}});
    film(TakeBundle::webcamFile, std::vector<PlainPicture>{{0, white}});
    startCameraAt(2);
    try {
        exportRange(1.5, 3);
        FAIL() << "read a range that ends before it starts";
    } catch (const Exporter::Failure& failure) {
        EXPECT_EQ(failure.reason(), Exporter::Failure::Reason::cantRead);
    }
    EXPECT_EQ(filesAtDestination(), 0);
}

TEST_F(ExportCameraTest, ACameraFileThatIsNoMovieIsNamed) {
    record(std::vector<PlainPicture>{{0, black}});
    std::ofstream(bundle_.file(TakeBundle::webcamFile)) << "words, words, words";
    try {
        exportRange(0, 1);
        FAIL() << "left the camera out without a word";
    } catch (const MediaError& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("\"webcam.mov\" can't be read: ")) << error.what();
    }
    EXPECT_EQ(filesAtDestination(), 0);
}

TEST_F(ExportCameraTest, AnUnreadableLogMeansNoOffset) {
    record(std::vector<PlainPicture>{{0, black}});
    film(TakeBundle::webcamFile, std::vector<PlainPicture>{{0, black}, {0.5, white}});
    startCameraAt(0.25);
    const auto wanted = [this] {
        bundle_.write(edit_);
        auto values = settings({{0, 1}});
        values.webcam = edit_.webcam;
        return values;
    }();
    std::ofstream(bundle_.file(TakeBundle::eventsFile)) << "{";
    run(wanted);
    EXPECT_EQ(brightFrames(destination_, camera).size(), 30U);
}

/// A take in which screen and camera flash together with a beep, 2.5 s after its start. Camera and microphone
/// began a little later than the screen.
class ExportTogetherTest : public ExportCameraTest {
  protected:
    ExportTogetherTest() {
        EventLog log;
        log.webcamStartOffset = 0.3;
        log.micStartOffset = 0.2;
        bundle_.write(log);
        bundle_.write(edit_);
        recordFlash(6, 60, 2.5, 2.7);
        film(TakeBundle::webcamFile, std::vector<PlainPicture>{{0, black}, {2.2, white}, {2.4, black}});
        writeWave(folder_.path() / "spoken.wav", beeps(5.8, std::vector<double>{2.3}));
        convertSound(folder_.path() / "spoken.wav", bundle_.file(TakeBundle::microphoneFile));
    }

    void exportAt(double speed, const Exporter::Progress& progress) {
        auto wanted = settings({{0.5, 1}, {2, 4}, {4.5, 6}});
        wanted.speed = speed;
        wanted.webcam = edit_.webcam;
        prepared(wanted).exportVideo(destination_, progress, {});
    }

    /// What was recorded at 2.5 s comes after one second of what is kept.
    void expectTogether(double speed) const {
        const auto frame = static_cast<std::size_t>(60 / speed);
        EXPECT_EQ(flashes(brightFrames(destination_, screen)), std::vector<std::size_t>{frame});
        EXPECT_EQ(flashes(brightFrames(destination_, camera)), std::vector<std::size_t>{frame});
        std::vector<StereoSample> sound(20 * soundRate);
        sound.resize(AudioReader::open(destination_)->read(0, sound));
        const auto heard = onsets(sound);
        ASSERT_EQ(heard.size(), 1U);
        EXPECT_NEAR(heard.front(), 1 / speed, 0.005);
    }
};

TEST_F(ExportTogetherTest, ScreenCameraAndVoiceStayTogetherThroughCutsAtEachSpeed) {
    for (const double speed : {0.5, 1.0, 1.5, 2.0}) {
        SCOPED_TRACE(speed);
        exportAt(speed, [](double) {});
        expectTogether(speed);
    }
}

TEST_F(ExportTogetherTest, ATakeThatIsDeletedMeanwhileIsExportedToItsEnd) {
    exportAt(1, [this](double) { std::filesystem::remove_all(bundle_.url); });
    EXPECT_FALSE(std::filesystem::exists(bundle_.url));
    expectTogether(1);
}

}  // namespace
}  // namespace tessaloom::test
