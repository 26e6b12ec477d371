// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <cmath>

#include "commands/CommandTest.h"
#include "core/EditParams.h"
#include "media/AudioReader.h"
#include "support/BrightFrames.h"
#include "support/Ffmpeg.h"
#include "support/MovieMaker.h"
#include "support/MovieProbe.h"
#include "support/SoundMaker.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;

constexpr double soundTolerance = 0.005;
constexpr double flashLength = 0.05;

/// Times in the recording.
using Times = std::vector<double>;

/// Exports a take whose screen flashes and whose tracks beep at known times.
class ExportSyncTest : public CommandTest {
  protected:
    /// Black, `rate` pictures a second, with a flash at each of these times.
    void film(double duration, double rate, const Times& times) const {
        auto pictures = plainPictures(static_cast<int>(duration * rate), rate, black);
        for (const double time : times) {
            std::erase_if(pictures, [time](const PlainPicture& picture) {
                return std::abs(picture.time - time - flashLength / 2) < flashLength / 2 + 0.001;
            });
            pictures.push_back({time, white});
            pictures.push_back({time + flashLength, black});
        }
        std::ranges::sort(pictures, {}, &PlainPicture::time);
        writeRecordedMovie(silent_, 64, 36, pictures);
    }

    /// What the system played, in the screen's own file.
    void play(const Sound& sound, int rate, const char* codec) const {
        const auto wave = folder_.path() / "system.wav";
        writeWave(wave, sound, rate);
        runFfmpeg({"-i", silent_.string(), "-i", wave.string(), "-map", "0:v", "-map", "1:a", "-c:v", "copy",
                   "-c:a", codec, take_.file(TakeBundle::screenFile).string()});
    }

    /// The microphone began this much after the screen.
    void setMicrophoneOffset(double offset) const {
        EventLog log;
        log.micStartOffset = offset;
        take_.write(log);
    }

    void exportIt(const EditParams& edit) const {
        take_.write(edit);
        const CommandResult result = run({"export", "take", "-o", film_.string()});
        EXPECT_EQ(result.status, 0) << result.errors;
    }

    void expectFlashes(const Times& times) const {
        const auto seen = flashes(brightFrames(film_, 0.5, 0.5));
        ASSERT_EQ(seen.size(), times.size());
        for (std::size_t i = 0; i < times.size(); ++i)
            EXPECT_EQ(static_cast<double>(seen[i]), std::ceil(times[i] * 60 - 1e-6)) << times[i];
    }

    void expectBeeps(const Times& times) const {
        std::vector<StereoSample> sound(60 * soundRate);
        sound.resize(AudioReader::open(film_)->read(0, sound));
        const auto heard = onsets(sound);
        ASSERT_EQ(heard.size(), times.size());
        for (std::size_t i = 0; i < times.size(); ++i)
            EXPECT_NEAR(heard[i], times[i], soundTolerance);
    }

    TakeBundle take_ = TakeBundle::create(library() / "take.takes");
    fs::path silent_ = folder_.path() / "silent.mov";
    fs::path film_ = outputs() / "film.mp4";
};

TEST_F(ExportSyncTest, WhatHappensTogetherIsSeenAndHeardTogetherAtEachSpeed) {
    film(4, 25, {0.8, 2.51, 3.2});
    play(beeps(4, Times{0.8, 2.51}), soundRate, "aac");
    EditParams edit;
    edit.trim = {0.5, 3.8};
    edit.removedRanges = {{1.0, 1.7}};
    struct Case {
        double speed;
        double offset;
        double counted;  ///< a negative offset counts as none
    };
    for (const auto& [speed, offset, counted] : std::vector<Case>{
             {0.5, 0.3, 0.3}, {1, 0, 0}, {1, 0.3, 0.3}, {1, -0.25, 0}, {1.5, 0.3, 0.3}, {2, -0.25, 0}}) {
        SCOPED_TRACE(testing::Message() << "speed " << speed << ", offset " << offset);
        writeWave(folder_.path() / "spoken.wav", beeps(4, Times{3.2 - counted}));
        convertSound(folder_.path() / "spoken.wav", take_.file(TakeBundle::microphoneFile));
        setMicrophoneOffset(offset);
        edit.speed = speed;
        exportIt(edit);
        const Times together{0.3 / speed, 1.31 / speed, 2.0 / speed};
        expectFlashes(together);
        expectBeeps(together);
    }
}

TEST_F(ExportSyncTest, TheyStayTogetherToTheEndOfAnHour) {
    constexpr double hour = 3600;
    // Without fine detail, which takes little room and time here.
    constexpr int rate = 4000;
    film(hour, 1, {1.2, 2.4, 3589.61, 3591.4});
    play(beeps(hour, Times{1.2, 3589.61}, rate), rate, "copy");
    writeWave(take_.file(TakeBundle::microphoneFile), beeps(hour, Times{2.1, 3591.1}, rate), rate);
    setMicrophoneOffset(0.3);
    EditParams edit;
    edit.trim = {1, 3592};
    edit.removedRanges = {{3, 3589}};
    for (const double speed : {1.0, 1.5}) {
        edit.speed = speed;
        exportIt(edit);
        const Times together{0.2 / speed, 1.4 / speed, 2.61 / speed, 4.4 / speed};
        expectFlashes(together);
        expectBeeps(together);
    }
}

TEST_F(ExportSyncTest, FiveHundredCutsAddUpNoError) {
    film(100.1, 10, {0.03, 50.03, 100.03});
    play(beeps(100.1, Times{0.03, 100.03}), soundRate, "aac");
    writeWave(take_.file(TakeBundle::microphoneFile), beeps(100.1, Times{50.03}));
    EditParams edit;
    edit.trim = {0, 100.1};
    for (int cut = 0; cut < 500; ++cut)
        edit.removedRanges.push_back({0.2 * cut + 0.1, 0.2 * cut + 0.2});
    exportIt(edit);
    EXPECT_EQ(probeMovie(film_).packets.size(), 3006U);
    expectFlashes({0.03, 25.03, 50.03});
    expectBeeps({0.03, 25.03, 50.03});
}

}  // namespace
}  // namespace tessaloom::test
