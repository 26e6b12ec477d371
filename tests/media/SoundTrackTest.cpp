// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "media/MovieWriter.h"
#include "support/MovieMaker.h"
#include "support/MovieProbe.h"
#include "support/SoundProbe.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

constexpr double frame = 1.0 / 60.0;
/// An encoder smears a sudden start by a little less than its shortest window.
constexpr double onsetTolerance = 0.004;

/// A second of which the first half is silent and the other a 1 kHz tone.
std::vector<float> halfSilentSecond(int rate, int channels) {
    std::vector<float> samples;
    for (int i = 0; i < rate; ++i) {
        const double phase = 2 * std::numbers::pi * 1000.0 * i / rate;
        const auto value = i < rate / 2 ? 0.0F : static_cast<float>(0.5 * std::sin(phase));
        samples.insert(samples.end(), static_cast<std::size_t>(channels), value);
    }
    return samples;
}

class SoundTrack : public ::testing::Test {
  protected:
    MovieWriter::Settings microphone() const {
        return {.container = MovieWriter::Container::fragmentedSound,
                .sound = AacSettings{.sampleRate = 44'100, .channels = 1}};
    }
    MovieWriter::Settings screen() const {
        return {.container = MovieWriter::Container::fragmentedMovie,
                .video = H264Settings::capture(64, 48),
                .sound = AacSettings{}};
    }
    /// Pictures and sound of so many seconds, flushed twice a second.
    static void appendSeconds(MovieWriter& writer, int seconds) {
        const auto sound = halfSilentSecond(48'000, 2);
        const auto part = sound.size() / 60;
        for (int n = 0; n < seconds * 60; ++n) {
            writer.appendVideo(test::plainYuv(64, 48, {}), n * frame, frame);
            const auto offset = static_cast<std::ptrdiff_t>(part) * (n % 60);
            writer.appendSound({sound.begin() + offset, sound.begin() + offset + static_cast<int>(part)});
            if (n % 30 == 0) writer.flush();
        }
    }
    test::TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "sound";
};

TEST_F(SoundTrack, StandsWhereItWasPutInEveryContainer) {
    for (const auto container : {MovieWriter::Container::fragmentedMovie,
                                 MovieWriter::Container::fragmentedSound, MovieWriter::Container::mp4}) {
        auto settings = container == MovieWriter::Container::fragmentedSound ? microphone() : screen();
        settings.container = container;
        const auto writer = MovieWriter::create(file, settings);
        for (int second = 0; second < 3; ++second) {
            if (settings.video) writer->appendVideo(test::plainYuv(64, 48, {}), second, 1);
            writer->appendSound(halfSilentSecond(settings.sound->sampleRate, settings.sound->channels));
            writer->flush();
        }
        writer->finish();
        const auto sound = test::decodeSound(file);
        EXPECT_EQ(sound.sampleRate, settings.sound->sampleRate);
        EXPECT_EQ(sound.channels, settings.sound->channels);
        EXPECT_NEAR(sound.duration(), 3.0, 0.03);
        for (const double second : {0.0, 1.0, 2.0})
            EXPECT_NEAR(sound.onset(0.2F, second + 0.1).value_or(-1), second + 0.5, onsetTolerance);
        EXPECT_NEAR(sound.peak(0.6, 0.9), 0.5F, 0.05F);
    }
}

TEST_F(SoundTrack, CanBePlayedUpToTheLastFlush) {
    const auto writer = MovieWriter::create(file, microphone());
    for (int n = 0; n < 5; ++n) {
        writer->appendSound(halfSilentSecond(44'100, 1));
        writer->flush();
    }
    const auto sound = test::decodeSound(file);  // nobody has finished it
    EXPECT_GT(sound.duration(), 4.9);
    EXPECT_NEAR(sound.onset(0.2F, 3.1).value_or(-1), 3.5, onsetTolerance);
}

TEST_F(SoundTrack, BesidePicturesCanBePlayedUpToTheLastFlush) {
    const auto writer = MovieWriter::create(file, screen());
    appendSeconds(*writer, 5);
    writer->flush();
    const auto sound = test::decodeSound(file);
    EXPECT_GT(sound.duration(), 4.9);
    EXPECT_NEAR(sound.onset(0.2F, 4.1).value_or(-1), 4.5, onsetTolerance);
    const auto pictures = test::probeMovie(file);
    EXPECT_EQ(pictures.packets.size(), 300U);
    EXPECT_EQ(pictures.packets.front().time, 0.0);
}

TEST_F(SoundTrack, AFlushBeforeTheSoundBeginsDoesNotShiftIt) {
    const auto writer = MovieWriter::create(file, screen());
    writer->appendVideo(test::plainYuv(64, 48, {}), 0, frame);
    writer->flush();
    writer->appendSound(halfSilentSecond(48'000, 2));
    writer->appendVideo(test::plainYuv(64, 48, {}), 1 - frame, frame);
    writer->finish();
    EXPECT_NEAR(test::decodeSound(file).onset(0.2F).value_or(-1), 0.5, onsetTolerance);
}

}  // namespace
}  // namespace tessaloom
