// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/AudioMix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "base/Resources.h"
#include "media/AudioReader.h"
#include "media/MediaError.h"
#include "support/MovieMaker.h"
#include "support/SoundMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using test::peakBetween;

constexpr double tolerance = 0.005;

/// A steady level, so that each gain can be read off.
test::Sound level(double seconds, float value) {
    return test::Sound(static_cast<std::size_t>(seconds * soundRate), value);
}

class AudioMixTest : public ::testing::Test {
  protected:
    AudioMixTest() { test::writeRecordedMovie(screen(), 64, 36, test::plainPictures(2, 2, test::white)); }

    std::filesystem::path screen() const { return bundle_.file(TakeBundle::screenFile); }
    std::filesystem::path microphone() const { return bundle_.file(TakeBundle::microphoneFile); }
    std::filesystem::path music() const { return folder_.path() / "music.wav"; }

    void setMicrophoneOffset(double seconds) const {
        EventLog log;
        log.micStartOffset = seconds;
        bundle_.write(log);
    }

    Exporter::Settings settings(std::vector<TimeSegment> segments, double speed = 1) const {
        Exporter::Settings settings;
        settings.segments = std::move(segments);
        settings.speed = speed;
        return settings;
    }

    Exporter::Settings withMusic(Exporter::Settings settings, double volume) const {
        settings.musicURL = music();
        settings.musicVolume = volume;
        return settings;
    }

    std::vector<StereoSample> mixed(const Exporter::Settings& settings) const {
        auto mix = makeAudioMix(bundle_, settings);
        if (!mix) return {};
        return test::pull(*mix->sound, mix->length);
    }

    void expectBeeps(const std::vector<StereoSample>& sound, const std::vector<double>& times) const {
        const auto found = test::onsets(sound);
        ASSERT_EQ(found.size(), times.size());
        for (std::size_t i = 0; i < times.size(); ++i)
            EXPECT_NEAR(found[i], times[i], tolerance) << i;
    }

    test::TemporaryFolder folder_;
    TakeBundle bundle_ = TakeBundle::create(folder_.path() / "a.takes");
};

TEST_F(AudioMixTest, ARecordingWithoutAnySoundHasNoMix) {
    EXPECT_FALSE(makeAudioMix(bundle_, settings({{0, 1}})));
    // A microphone track without sound in it is no sound either.
    std::filesystem::copy_file(screen(), microphone());
    EXPECT_FALSE(makeAudioMix(bundle_, settings({{0, 1}})));
}

TEST_F(AudioMixTest, ItIsAsLongAsTheResult) {
    test::writeWave(microphone(), level(1, 0.1F));
    EXPECT_EQ(makeAudioMix(bundle_, settings({{0, 1}, {2, 5}}))->length, 4 * soundRate);
    EXPECT_EQ(makeAudioMix(bundle_, settings({{0, 1}, {2, 5}}, 2))->length, 2 * soundRate);
    EXPECT_EQ(makeAudioMix(bundle_, settings({}))->length, 4);
}

TEST_F(AudioMixTest, TheSystemsSoundKeepsItsLevelAndTheMicrophoneHasItsVolume) {
    test::writeWave(screen(), level(4, 0.2F));
    test::writeWave(microphone(), level(2, 0.3F));
    auto wanted = settings({{0, 4}});
    wanted.micVolume = 1.5;
    const auto sound = mixed(wanted);
    EXPECT_NEAR(peakBetween(sound, 0.5, 1.5), 0.2 + 0.45, 0.001);
    EXPECT_NEAR(peakBetween(sound, 2.5, 3.5), 0.2, 0.001);
    wanted.micVolume = 0;
    EXPECT_NEAR(peakBetween(mixed(wanted), 0.5, 1.5), 0.2, 0.001);
}

TEST_F(AudioMixTest, AMicrophoneThatStartedLaterLinesUpWithThePicture) {
    test::writeWave(microphone(), test::beeps(6, std::vector<double>{0.5, 4.0}));
    setMicrophoneOffset(0.75);
    expectBeeps(mixed(settings({{0, 8}})), {1.25, 4.75});
    expectBeeps(mixed(settings({{1, 2}, {4.5, 8}})), {0.25, 1.25});
}

TEST_F(AudioMixTest, ANegativeOffsetCountsAsNone) {
    test::writeWave(microphone(), test::beeps(2, std::vector<double>{0.5}));
    setMicrophoneOffset(-0.25);
    expectBeeps(mixed(settings({{0, 2}})), {0.5});
}

TEST_F(AudioMixTest, ADamagedLogMeansNoOffset) {
    test::writeWave(microphone(), test::beeps(2, std::vector<double>{0.5}));
    std::ofstream(bundle_.file(TakeBundle::eventsFile)) << "no log";
    expectBeeps(mixed(settings({{0, 2}})), {0.5});
}

TEST_F(AudioMixTest, SoundIsWhereCutsAndSpeedPutIt) {
    const std::vector<double> times{0.5, 1.5, 4.25, 9.0};
    test::writeWave(screen(), test::beeps(10, times));
    const std::vector<TimeSegment> segments{{0.25, 2}, {4, 5}, {8.5, 10}};
    for (const double speed : {0.5, 1.0, 1.5, 2.0})
        expectBeeps(mixed(settings(segments, speed)),
                    {0.25 / speed, 1.25 / speed, 2.0 / speed, 3.25 / speed});
}

TEST_F(AudioMixTest, ASpeedThatIsNoneCountsAsOne) {
    test::writeWave(microphone(), test::beeps(2, std::vector<double>{0.5}));
    for (const double speed : {0.0, -2.0, std::nan(""), static_cast<double>(INFINITY)})
        expectBeeps(mixed(settings({{0, 2}}, speed)), {0.5});
}

TEST_F(AudioMixTest, AnHourLaterItIsStillInItsPlace) {
    // As it may be recorded: at 8 kHz, where it takes little room here.
    std::vector<double> times;
    for (int minute = 0; minute < 60; ++minute)
        times.push_back(minute * 60 + 3.2);
    test::writeWave(microphone(), test::beeps(3600, times, 8000), 8000);
    setMicrophoneOffset(0.3);
    std::vector<TimeSegment> segments;
    std::vector<double> expected;
    for (int minute = 0; minute < 60; ++minute) {
        segments.push_back({minute * 60 + 3.1, minute * 60 + 3.9});
        segments.push_back({minute * 60 + 59.8, minute * 60 + 60.0});
        expected.push_back((minute + 0.4) / 2);
    }
    expectBeeps(mixed(settings(segments, 2)), expected);
    expectBeeps(mixed(settings({{3596, 3600}})), {});
    expectBeeps(mixed(settings({{3540, 3600}})), {3.5});
}

TEST_F(AudioMixTest, AnotherMicrophoneFileCountsOnlyWhereThereIsAMicrophone) {
    const auto enhanced = folder_.path() / "enhanced.wav";
    test::writeWave(enhanced, test::beeps(2, std::vector<double>{1.0}));
    auto wanted = settings({{0, 2}});
    wanted.micURL = enhanced;
    EXPECT_FALSE(makeAudioMix(bundle_, wanted));
    test::writeWave(microphone(), test::beeps(2, std::vector<double>{0.5}));
    expectBeeps(mixed(wanted), {1.0});
}

TEST_F(AudioMixTest, MusicIsDuckedUnderRecordedSoundAndFullWithoutAny) {
    test::writeWave(music(), level(1.5, 0.8F));
    const auto wanted = withMusic(settings({{0, 4}}), 0.5);
    EXPECT_NEAR(peakBetween(mixed(wanted), 1, 3), 0.4, 0.001);
    // Ducked as a whole, also where the recorded sound doesn't reach.
    test::writeWave(microphone(), level(1, 0));
    EXPECT_NEAR(peakBetween(mixed(wanted), 1, 3), 0.4 * 0.35, 0.001);
    std::filesystem::remove(microphone());
    test::writeWave(screen(), level(1, 0));
    EXPECT_NEAR(peakBetween(mixed(wanted), 1, 3), 0.4 * 0.35, 0.001);
}

TEST_F(AudioMixTest, MusicLoopsUnderTheResultAtItsOwnSpeedAndFades) {
    test::writeWave(music(), test::sine(1, 441, 0.8));
    const auto sound = mixed(withMusic(settings({{0, 10}}, 2), 1));
    ASSERT_EQ(sound.size(), 5U * soundRate);
    for (std::size_t i = soundRate; i < 4 * soundRate; ++i)
        ASSERT_NEAR(sound[i].left,
                    0.8 * std::sin(2 * 3.14159265358979 * 441 * static_cast<double>(i) / soundRate), 1e-3);
    EXPECT_NEAR(peakBetween(sound, 0.24, 0.26), 0.4, 0.02);
    EXPECT_NEAR(peakBetween(sound, 4.74, 4.76), 0.4, 0.02);
}

TEST_F(AudioMixTest, EachClickSoundsAtItsPlaceUnscaledAndAtHalfItsLevel) {
    const auto file = resource("click.wav");
    ASSERT_TRUE(file);
    std::vector<StereoSample> click(soundRate);
    click.resize(AudioReader::open(*file)->read(0, click));
    auto wanted = settings({{1, 3}, {5, 7}}, 2);
    // Before the result, inside, in the cut, inside, and after the end, where it makes the sound longer.
    wanted.clickSoundTimes = {0.5, 1.8, 4, 6, 9};
    const auto sound = mixed(wanted);
    ASSERT_EQ(sound.size(), 2 * soundRate + click.size());
    for (const double time : {0.0, 0.4, 1.0, 1.5, 2.0}) {
        const auto start = static_cast<std::size_t>(std::llround(time * soundRate));
        for (std::size_t i = 0; i < click.size(); ++i)
            ASSERT_NEAR(sound[start + i].left, 0.5F * click[i].left, 1e-6) << time;
    }
    EXPECT_EQ(peakBetween(sound, 0.6, 0.99), 0);
}

TEST_F(AudioMixTest, ManySourcesTogetherDoNotClip) {
    test::writeWave(screen(), test::sine(3, 200, 0.9));
    test::writeWave(microphone(), test::sine(3, 300, 0.9));
    test::writeWave(music(), test::sine(3, 500, 0.9));
    auto wanted = withMusic(settings({{0, 3}}), 1);
    wanted.micVolume = 2;
    const auto sound = mixed(wanted);
    EXPECT_LE(peakBetween(sound, 0, 3), 1.0001);
    EXPECT_GT(peakBetween(sound, 1, 2), 0.8);
}

TEST_F(AudioMixTest, VolumesThatAreNoneAreSilentAndMadOnesBounded) {
    test::writeWave(microphone(), level(1, 0.5F));
    auto wanted = settings({{0, 1}});
    for (const double volume : {-1.0, std::nan("")}) {
        wanted.micVolume = volume;
        EXPECT_EQ(peakBetween(mixed(wanted), 0, 1), 0) << volume;
    }
    wanted.micVolume = 1e300;
    EXPECT_LE(peakBetween(mixed(wanted), 0, 1), 1.0001);
}

TEST_F(AudioMixTest, TimesThatOnlyADamagedTakeHasDoNoHarm) {
    test::writeWave(microphone(), test::beeps(2, std::vector<double>{0.5}));
    setMicrophoneOffset(1e300);
    EXPECT_EQ(peakBetween(mixed(settings({{0, 2}})), 0, 2), 0);
    setMicrophoneOffset(0);
    for (const double speed : {1e-300, 1.0, 1e300}) {
        auto wanted = settings({{0, 1e300}}, speed);
        wanted.clickSoundTimes = {-1e300, 1e300};
        const auto mix = makeAudioMix(bundle_, wanted);
        ASSERT_TRUE(mix);
        EXPECT_EQ(test::pull(*mix->sound, soundRate).size(), soundRate + 0U) << speed;
    }
}

TEST_F(AudioMixTest, AFileThatCannotBeReadEndsIt) {
    test::writeWave(microphone(), level(1, 0.1F));
    EXPECT_THROW(makeAudioMix(bundle_, withMusic(settings({{0, 1}}), 1)), MediaError);
    std::ofstream(music()) << "words";
    EXPECT_THROW(makeAudioMix(bundle_, withMusic(settings({{0, 1}}), 1)), MediaError);
    auto wanted = settings({{0, 1}});
    wanted.micURL = folder_.path() / "missing.m4a";
    EXPECT_THROW(makeAudioMix(bundle_, wanted), MediaError);
    std::ofstream(microphone()) << "words";
    EXPECT_THROW(makeAudioMix(bundle_, settings({{0, 1}})), MediaError);
}

TEST_F(AudioMixTest, TheInstalledMusicLoopsWithoutASeam) {
    for (const char* name : {"lofi", "ambient", "synthwave", "cinematic"}) {
        const auto file = resource(std::string(name) + ".m4a");
        ASSERT_TRUE(file) << name;
        std::vector<StereoSample> once(60 * soundRate);
        once.resize(AudioReader::open(*file)->read(0, once));
        EXPECT_GE(once.size(), 20U * soundRate) << name;
        EXPECT_LT(peakBetween(once, 0, 60), 0.707) << name;
        EXPECT_GT(peakBetween(once, 0, 60), 0.2) << name;
        // The step over the joint is one that the material has, too.
        const std::vector<StereoSample> joint{once[once.size() - 2], once.back(), once[0], once[1]};
        const auto nearby = std::span(once).last(soundRate);
        EXPECT_LE(test::steepestStep(joint), test::steepestStep(nearby)) << name;
    }
}

}  // namespace
}  // namespace tessaloom
