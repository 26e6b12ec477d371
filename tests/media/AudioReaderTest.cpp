// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/AudioReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>

#include "media/MediaError.h"
#include "support/FailingFile.h"
#include "support/MovieMaker.h"
#include "support/SoundMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

/// Different at every sample: where it stands can be read off its value.
test::Sound counting(std::size_t count) {
    test::Sound sound(count);
    for (std::size_t i = 0; i < count; ++i)
        sound[i] = static_cast<float>(i % 30'000) / 32767;
    return sound;
}

std::vector<StereoSample> readAt(AudioReader& reader, std::int64_t position, std::size_t count) {
    std::vector<StereoSample> sound(count);
    reader.read(position, sound);
    return sound;
}

class AudioReaderTest : public ::testing::Test {
  protected:
    std::filesystem::path file(const char* name) const { return folder_.path() / name; }

    /// A file in some other form with this sound.
    std::filesystem::path encoded(const char* name, const test::Sound& sound,
                                  const std::vector<std::string>& options = {}) const {
        test::writeWave(file("source.wav"), sound);
        test::convertSound(file("source.wav"), file(name), options);
        return file(name);
    }

  private:
    test::TemporaryFolder folder_;
};

TEST_F(AudioReaderTest, EverySampleIsAtItsPlaceAndSilenceIsAround) {
    constexpr std::int64_t length = 25'000;
    test::writeWave(file("a.wav"), counting(length));
    const auto reader = AudioReader::open(file("a.wav"));
    // Forwards, backwards, over both ends, and where nothing is.
    for (const std::int64_t position :
         {-50LL, 50LL, 20'000LL, 100LL, 24'950LL, 90'000LL, -500LL, 24'999LL, 0LL}) {
        const auto sound = readAt(*reader, position, 100);
        for (std::int64_t i = 0; i < 100; ++i) {
            const std::int64_t at = position + i;
            const float expected = at >= 0 && at < length ? static_cast<float>(at) / 32768 : 0;
            EXPECT_NEAR(sound[static_cast<std::size_t>(i)].left, expected, 1e-6) << at;
            EXPECT_EQ(sound[static_cast<std::size_t>(i)].left, sound[static_cast<std::size_t>(i)].right)
                << at;
        }
    }
}

TEST_F(AudioReaderTest, ItTellsWhereTheSoundEnds) {
    test::writeWave(file("a.wav"), counting(1000));
    const auto reader = AudioReader::open(file("a.wav"));
    std::vector<StereoSample> target(600);
    EXPECT_EQ(reader->read(0, target), 600U);
    EXPECT_EQ(reader->read(600, target), 400U);
    EXPECT_EQ(reader->read(1200, target), 0U);
    EXPECT_EQ(reader->read(1800, target), 0U);
    EXPECT_EQ(reader->read(999, target), 1U);
    EXPECT_EQ(reader->read(-10, target), 600U);
}

TEST_F(AudioReaderTest, WhatAnEncoderAddsAtBothEndsIsLeftOut) {
    const std::vector<double> times{0, 0.7, 1.3};
    for (const char* name : {"a.m4a", "a.flac", "a.ogg"}) {
        const auto path = encoded(name, test::beeps(1.5, times));
        std::vector<StereoSample> sound(2 * soundRate);
        EXPECT_EQ(AudioReader::open(path)->read(0, sound), 66'150U) << name;
        const auto found = test::onsets(sound);
        ASSERT_EQ(found.size(), times.size()) << name;
        for (std::size_t i = 0; i < times.size(); ++i)
            EXPECT_NEAR(found[i], times[i], 0.001) << name;
    }
}

TEST_F(AudioReaderTest, ReadingFromTheMiddleGivesWhatReadingThroughGives) {
    const auto path = encoded("a.m4a", test::sine(20, 313, 0.5));
    std::vector<StereoSample> whole(20 * soundRate);
    AudioReader::open(path)->read(0, whole);
    const auto reader = AudioReader::open(path);
    for (const std::size_t position : {600'000U, 3U, 800'000U, 799'000U, 100'000U, 0U}) {
        const auto part = readAt(*reader, static_cast<std::int64_t>(position), 2000);
        for (std::size_t i = 0; i < part.size(); ++i)
            ASSERT_NEAR(part[i].left, whole[position + i].left, 0.005) << position << " + " << i;
    }
}

TEST_F(AudioReaderTest, OtherRatesAndChannelsComeOutInPlaceAndAtTheirLevel) {
    const std::vector<double> times{0.25, 3.75};
    test::Sound sound = test::beeps(4, times);
    const std::vector<std::vector<std::string>> forms{{"-ar", "48000"},
                                                      {"-ar", "8000"},
                                                      {"-ar", "96000", "-c:a", "pcm_s24le"},
                                                      {"-ar", "48000", "-c:a", "pcm_f32le"},
                                                      {"-c:a", "pcm_u8"}};
    for (const auto& form : forms) {
        const auto path = encoded("other.wav", sound, form);
        const auto reader = AudioReader::open(path);
        std::vector<StereoSample> heard(4 * soundRate);
        EXPECT_NEAR(static_cast<double>(reader->read(0, heard)), 4 * soundRate, 1) << form[1];
        const auto found = test::onsets(heard);
        ASSERT_EQ(found.size(), 2U) << form[1];
        EXPECT_NEAR(found[0], times[0], 0.0003) << form[1];
        EXPECT_NEAR(found[1], times[1], 0.0003) << form[1];
        EXPECT_NEAR(test::peakBetween(heard, 3.76, 3.79), 0.5, 0.01) << form[1];
        const auto again = readAt(*reader, std::llround(0.25 * soundRate), 1000);
        EXPECT_NEAR(test::onsets(again).front(), 0, 0.0003) << form[1];
    }
}

TEST_F(AudioReaderTest, AHoleInTheTrackIsSilentAndMovesNothing) {
    const std::vector<double> times{0.5, 4.5};
    const auto path = encoded("holed.mka", test::beeps(5, times),
                              {"-af", "aselect='not(between(t,1,4))'", "-c:a", "pcm_s16le"});
    std::vector<StereoSample> sound(5 * soundRate);
    AudioReader::open(path)->read(0, sound);
    const auto found = test::onsets(sound);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_NEAR(found[0], times[0], 0.001);
    EXPECT_NEAR(found[1], times[1], 0.001);
}

TEST_F(AudioReaderTest, ValuesThatAreNoNumbersAreSilentAndMadLevelsHeldDown) {
    test::writeWave(file("a.wav"), test::Sound(100));
    test::convertSound(file("a.wav"), file("b.wav"), {"-c:a", "pcm_f32le"});
    const float values[] = {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                            1e30F};
    std::fstream stream(file("b.wav"), std::ios::binary | std::ios::in | std::ios::out);
    stream.seekp(-static_cast<std::streamoff>(sizeof values), std::ios::end);
    stream.write(reinterpret_cast<const char*>(values), sizeof values);
    stream.close();
    const auto sound = readAt(*AudioReader::open(file("b.wav")), 97, 3);
    EXPECT_EQ(sound[0].left, 0);
    EXPECT_EQ(sound[1].left, 0);
    EXPECT_LE(sound[2].left, 100);
}

TEST_F(AudioReaderTest, AFileWithoutSoundIsToldFromADamagedOne) {
    test::writeRecordedMovie(file("silent.mov"), 64, 36, test::plainPictures(3, 30, test::white));
    EXPECT_THROW(AudioReader::open(file("silent.mov")), NoAudioTrack);
    std::ofstream(file("words.m4a")) << "words, words, words";
    for (const char* name : {"words.m4a", "missing.m4a"}) {
        try {
            AudioReader::open(file(name));
            FAIL() << "opened " << name;
        } catch (const NoAudioTrack&) {
            FAIL() << name << " isn't silent";
        } catch (const UnreadableMovie& error) {
            EXPECT_EQ(std::string(error.what()).find("\"" + std::string(name) + "\" can't be read: "), 0U);
        }
    }
}

TEST_F(AudioReaderTest, AFileThatWasCutOffIsHeardUpToTheCut) {
    test::writeWave(file("a.wav"), test::sine(4, 500, 0.5));
    std::filesystem::resize_file(file("a.wav"), std::filesystem::file_size(file("a.wav")) / 2);
    std::vector<StereoSample> sound(4 * soundRate);
    EXPECT_NEAR(static_cast<double>(AudioReader::open(file("a.wav"))->read(0, sound)), 2 * soundRate, 1024);
    EXPECT_GT(test::peakBetween(sound, 1.9, 1.97), 0.49);
    EXPECT_EQ(test::peakBetween(sound, 2.01, 4), 0);
}

TEST_F(AudioReaderTest, ADiskThatFailsIsNoEnd) {
    test::writeWave(file("a.wav"), counting(100'000));
    const test::FailingFile failing(file("a.wav"), 100'000);
    const auto reader = AudioReader::open(failing.name());
    EXPECT_EQ(readAt(*reader, 0, 1000).back().left, 999.0F / 32768);
    EXPECT_THROW(readAt(*reader, 40'000, 50'000), UnreadableMovie);
}

}  // namespace
}  // namespace tessaloom
