// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "export/AudioMix.h"
#include "export/ExporterFixture.h"
#include "export/MovieSink.h"
#include "media/AudioReader.h"
#include "media/MediaError.h"
#include "support/MovieProbe.h"
#include "support/SoundMaker.h"

namespace tessaloom::test {
namespace {

/// Exports takes with a microphone track, encoded as a recorder does.
class ExportSoundTest : public ExporterTest {
  protected:
    void speak(const Sound& sound) const {
        const auto wave = folder_.path() / "spoken.wav";
        writeWave(wave, sound);
        convertSound(wave, bundle_.file(TakeBundle::microphoneFile), {"-ar", "48000"});
    }

    std::vector<StereoSample> heard() const {
        std::vector<StereoSample> sound(30 * soundRate);
        sound.resize(AudioReader::open(destination_)->read(0, sound));
        return sound;
    }
};

TEST_F(ExportSoundTest, ASilentTakeHasNoSoundTrack) {
    recordFlash(1, 30, 0, 1);
    run(settings({{0, 1}}));
    EXPECT_FALSE(probeSound(destination_));
}

TEST_F(ExportSoundTest, SoundAndPicturesStayTogetherThroughCutsAtEachSpeed) {
    // What is seen at 2.5 s is heard at 2.5 s.
    recordFlash(6, 60, 2.5, 2.8);
    speak(beeps(6, std::vector<double>{2.5, 5.0}));
    for (const double speed : {0.5, 1.0, 1.5, 2.0}) {
        auto wanted = settings({{0.5, 1}, {2, 4}, {4.5, 6}});
        wanted.speed = speed;
        run(wanted);
        const auto found = onsets(heard());
        ASSERT_EQ(found.size(), 2U) << speed;
        EXPECT_NEAR(found[0], 1.0 / speed, 0.005) << speed;
        EXPECT_NEAR(found[1], 3.0 / speed, 0.005) << speed;
        EXPECT_NEAR(static_cast<double>(brightFrames(destination_).front()) / 60, found[0], 1.0 / 60)
            << speed;
        const auto facts = probeSound(destination_);
        EXPECT_EQ(facts->codec, "aac");
        EXPECT_EQ(facts->rate, 44'100);
        EXPECT_EQ(facts->channels, 2);
        EXPECT_NEAR(facts->startTime, 0, 1e-4);
        EXPECT_NEAR(facts->duration, 4 / speed, 0.001);
    }
}

TEST_F(ExportSoundTest, AMicrophoneThatEndsEarlyLeavesSilence) {
    recordFlash(4, 30, 0, 1);
    speak(sine(1, 500, 0.5));
    run(settings({{0, 4}}));
    const auto sound = heard();
    EXPECT_NEAR(static_cast<double>(sound.size()), 4 * soundRate, 1);
    EXPECT_NEAR(peakBetween(sound, 0.2, 0.9), 0.5, 0.03);
    EXPECT_LT(peakBetween(sound, 1.1, 4), 0.001);
}

TEST_F(ExportSoundTest, AMicrophoneThatRunsOnIsCutWithThePicture) {
    recordFlash(1, 30, 0, 1);
    speak(sine(5, 500, 0.5));
    run(settings({{0, 1}}));
    EXPECT_NEAR(static_cast<double>(heard().size()), soundRate, 1);
}

TEST_F(ExportSoundTest, AMicrophoneFileThatCannotBeReadFailsAndLeavesNothing) {
    recordFlash(1, 30, 0, 1);
    std::ofstream(bundle_.file(TakeBundle::microphoneFile)) << "words";
    try {
        run(settings({{0, 1}}));
        FAIL() << "exported without its sound";
    } catch (const MediaError& error) {
        EXPECT_EQ(std::string(error.what()).find("\"audio.m4a\" can't be read: "), 0U);
    }
    EXPECT_EQ(filesAtDestination(), 0);
}

TEST_F(ExportSoundTest, CancellingEndsTheSoundToo) {
    // One picture, and then an hour of nothing but sound.
    recordFlash(0.5, 30, 0, 1);
    writeWave(bundle_.file(TakeBundle::microphoneFile), Sound(3600 * 1000), 1000);
    std::stop_source stop;
    auto mix = makeAudioMix(bundle_, settings({{0, 3600}}));
    ASSERT_TRUE(mix);
    MovieSink sink(
        MovieWriter::create(folder_.path() / "a.mp4", {.video = H264Settings::exported(64, 36, 500'000),
                                                       .sound = AacSettings{.sampleRate = soundRate}}),
        std::move(mix), stop.get_token());
    sink.append(0, plainYuv(64, 36, white), FrameChange::content);
    stop.request_stop();
    EXPECT_THROW(sink.append(1, plainYuv(64, 36, white), FrameChange::none), ExportCancelled);
    EXPECT_THROW(sink.finish(), ExportCancelled);
}

TEST_F(ExportSoundTest, SoundLiesBesideThePicturesInTheFileAlsoWhereTheSceneRests) {
    record(std::vector<PlainPicture>{{0, white}});
    speak(sine(90, 500, 0.5));
    run(settings({{0, 90}}));
    EXPECT_LT(widestStep(destination_), 2);
}

TEST_F(ExportSoundTest, AtTheEndOfAnHourAtRestBeepsAreWhereTheyBelong) {
    constexpr double hour = 3600;
    // Without fine detail, which takes little room and time here.
    constexpr int rate = 4000;
    const std::vector<double> times{0.5, 1800.2, 3591.7, 3599.4};
    record(std::vector<PlainPicture>{{0, black}});
    writeWave(bundle_.file(TakeBundle::microphoneFile), beeps(hour, times, rate), rate);
    auto wanted = settings({{0, hour}});
    wanted.outputLongEdge = 32;
    run(wanted);
    const auto reader = AudioReader::open(destination_);
    for (const double time : times) {
        std::vector<StereoSample> around(soundRate / 2);
        reader->read(soundPosition(time - 0.25), around);
        const auto heard = onsets(around);
        ASSERT_EQ(heard.size(), 1U) << time;
        EXPECT_NEAR(heard.front(), 0.25, 0.005) << time;
    }
    const MovieFacts facts = probeMovie(destination_);
    ASSERT_EQ(facts.packets.size(), 216'000U);
    EXPECT_NEAR(facts.packets.back().time, hour - 1.0 / 60, 1e-6);
    EXPECT_NEAR(probeSound(destination_)->duration, hour, 0.001);
}

}  // namespace
}  // namespace tessaloom::test
