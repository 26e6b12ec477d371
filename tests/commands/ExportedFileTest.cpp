// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <chrono>
#include <random>

#include "commands/CommandTest.h"
#include "support/Ffmpeg.h"
#include "support/MovieMaker.h"
#include "support/MovieProbe.h"
#include "support/SoundMaker.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;

/// What FFmpeg's own prober says of one stream, "name=value" on lines of their own.
std::string probed(const fs::path& file, const std::string& stream) {
    ChildProcess process({"ffprobe", "-v", "error", "-select_streams", stream, "-show_streams", "-of",
                          "default=noprint_wrappers=1", file.string()},
                         currentEnvironment());
    EXPECT_EQ(process.waitForExit(std::chrono::seconds(20)), 0) << process.errors();
    return "\n" + process.output();
}

/// The value of one of these lines.
std::string valueOf(const std::string& facts, const std::string& name) {
    const auto line = facts.find("\n" + name + "=");
    if (line == std::string::npos) return "(nothing)";
    const auto value = line + name.size() + 2;
    return facts.substr(value, facts.find('\n', value) - value);
}

void expectFacts(const std::string& facts, const std::vector<std::pair<std::string, std::string>>& expected) {
    for (const auto& [name, value] : expected)
        EXPECT_EQ(valueOf(facts, name), value) << name;
}

std::size_t countOf(const std::string& bytes, std::string_view text) {
    std::size_t count = 0;
    for (auto place = bytes.find(text); place != std::string::npos; place = bytes.find(text, place + 1))
        ++count;
    return count;
}

Sound noise(double seconds) {
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> level(-0.5F, 0.5F);
    Sound sound(static_cast<std::size_t>(seconds * soundRate));
    std::ranges::generate(sound, [&] { return level(generator); });
    return sound;
}

/// The form that players, browsers and social networks all take.
class ExportedFileTest : public CommandTest {
  protected:
    void exportRecording(int width, int height) const {
        const auto take = TakeBundle::create(library() / "take.takes");
        writeRecordedMovie(take.file(TakeBundle::screenFile), width, height,
                           plainPictures(40, 10, pureGreen));
        writeWave(take.file(TakeBundle::microphoneFile), noise(4));
        const CommandResult result = run({"export", "take", "-o", film_.string()});
        ASSERT_EQ(result.status, 0) << result.errors;
    }

    fs::path film_ = outputs() / "film.mp4";
};

const std::vector<std::pair<std::string, std::string>> bt709{{"color_range", "tv"},
                                                             {"color_space", "bt709"},
                                                             {"color_transfer", "bt709"},
                                                             {"color_primaries", "bt709"}};

TEST_F(ExportedFileTest, ThePicturesHaveTheFormThatPlaysEverywhere) {
    exportRecording(202, 114);
    const std::string video = probed(film_, "v:0");
    expectFacts(video, {{"codec_name", "h264"},
                        {"codec_tag_string", "avc1"},
                        {"profile", "High"},
                        {"pix_fmt", "yuv420p"},
                        {"field_order", "progressive"},
                        {"r_frame_rate", "60/1"},
                        {"avg_frame_rate", "60/1"},
                        {"start_time", "0.000000"}});
    expectFacts(video, bt709);
    for (const char* side : {"width", "height"})
        EXPECT_EQ(std::stoi(valueOf(video, side)) % 2, 0) << side;
}

TEST_F(ExportedFileTest, StreamAndContainerEachTellTheColors) {
    exportRecording(64, 36);
    // Without its container, only the stream's own tags are left.
    const auto stream = folder_.path() / "stream.h264";
    runFfmpeg({"-i", film_.string(), "-c:v", "copy", "-an", stream.string()});
    expectFacts(probed(stream, "v:0"), bt709);
    using namespace std::string_literals;
    EXPECT_EQ(countOf(contentOf(film_), "colrnclx\0\1\0\1\0\1\0"s), 1U);
}

TEST_F(ExportedFileTest, TheSoundIsStereoAt128KilobitsASecond) {
    exportRecording(64, 36);
    const std::string sound = probed(film_, "a:0");
    expectFacts(sound, {{"codec_name", "aac"},
                        {"profile", "LC"},
                        {"sample_rate", "44100"},
                        {"channels", "2"},
                        {"channel_layout", "stereo"},
                        {"start_time", "0.000000"}});
    EXPECT_NEAR(std::stod(valueOf(sound, "bit_rate")), 128'000, 8'000);
}

TEST_F(ExportedFileTest, TheIndexIsInFrontAndBothTracksSayWhereTheyStart) {
    exportRecording(64, 36);
    const auto boxes = topLevelBoxes(film_);
    EXPECT_EQ(boxes.front(), "ftyp");
    EXPECT_LT(std::ranges::find(boxes, "moov"), std::ranges::find(boxes, "mdat"));
    const std::string bytes = contentOf(film_);
    EXPECT_EQ(countOf(bytes.substr(0, bytes.find("mdat")), "elst"), 2U);
}

}  // namespace
}  // namespace tessaloom::test
