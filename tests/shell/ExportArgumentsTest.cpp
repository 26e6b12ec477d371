// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ExportArguments.h"

#include <gtest/gtest.h>

#include "shell/UsageErrorOf.h"

namespace tessaloom {
namespace {

std::string errorOf(const QStringList& words) {
    return test::usageErrorOf([&] { return ExportArguments::parse(words); });
}

TEST(ExportArgumentsTest, TheRecordingAloneIsEnough) {
    const auto arguments = ExportArguments::parse({"my take"});
    EXPECT_EQ(arguments.bundle, "my take");
    EXPECT_EQ(arguments.destination, std::nullopt);
    EXPECT_EQ(arguments.choices.resolution, ResolutionPreset::p1080);
    EXPECT_EQ(arguments.choices.quality, QualityPreset::high);
    EXPECT_EQ(arguments.choices.shape, std::nullopt);
}

TEST(ExportArgumentsTest, EachResolutionHasAWord) {
    const std::pair<const char*, ResolutionPreset> cases[] = {{"720p", ResolutionPreset::p720},
                                                              {"1080p", ResolutionPreset::p1080},
                                                              {"1440p", ResolutionPreset::p1440},
                                                              {"4k", ResolutionPreset::p2160},
                                                              {"4K", ResolutionPreset::p2160}};
    for (const auto& [word, preset] : cases)
        EXPECT_EQ(ExportArguments::parse({"take", "--resolution", word}).choices.resolution, preset) << word;
}

TEST(ExportArgumentsTest, EachShapeHasAWord) {
    const std::pair<const char*, AspectPreset> cases[] = {{"native", AspectPreset::native},
                                                          {"16:9", AspectPreset::wide},
                                                          {"1:1", AspectPreset::square},
                                                          {"4:5", AspectPreset::portrait},
                                                          {"9:16", AspectPreset::vertical}};
    for (const auto& [word, preset] : cases)
        EXPECT_EQ(ExportArguments::parse({"take", "--shape", word}).choices.shape, preset) << word;
}

TEST(ExportArgumentsTest, EachQualityHasAWord) {
    const std::pair<const char*, QualityPreset> cases[] = {{"high", QualityPreset::high},
                                                           {"balanced", QualityPreset::balanced},
                                                           {"small", QualityPreset::small}};
    for (const auto& [word, preset] : cases)
        EXPECT_EQ(ExportArguments::parse({"take", "--quality", word}).choices.quality, preset) << word;
}

TEST(ExportArgumentsTest, UnknownChoicesAreAnsweredWithTheKnownOnes) {
    EXPECT_EQ(errorOf({"take", "--resolution", "8k"}),
              "--resolution is one of 720p, 1080p, 1440p, 4k, not \"8k\".");
    EXPECT_EQ(errorOf({"take", "--shape", "2:1"}),
              "--shape is one of native, 16:9, 1:1, 4:5, 9:16, not \"2:1\".");
    EXPECT_EQ(errorOf({"take", "--quality", ""}), "--quality is one of high, balanced, small, not \"\".");
    EXPECT_EQ(errorOf({}), "RECORDING is missing.");
}

TEST(ExportArgumentsTest, TheFormatIsWhatTheFileEndsInOrWhatIsAsked) {
    const auto formatOf = [](const QStringList& words) { return ExportArguments::parse(words).format; };
    EXPECT_EQ(formatOf({"take"}), ExportFormat::mp4);
    EXPECT_EQ(formatOf({"take", "-o", "a/b.mp4"}), ExportFormat::mp4);
    EXPECT_EQ(formatOf({"take", "-o", "Film.MP4"}), ExportFormat::mp4);
    EXPECT_EQ(formatOf({"take", "--format", "gif", "-o", "Film.Gif"}), ExportFormat::gif);
    EXPECT_EQ(formatOf({"take", "-o", "b.gif"}), ExportFormat::gif);
    EXPECT_EQ(formatOf({"take", "--format", "gif"}), ExportFormat::gif);
    EXPECT_EQ(formatOf({"take", "--format", "gif", "-o", "b.gif"}), ExportFormat::gif);
    EXPECT_EQ(ExportArguments::parse({"take", "-o", "a/b.gif"}).destination, "a/b.gif");
    EXPECT_EQ(errorOf({"take", "--format", "webm"}), "--format is one of mp4, gif, not \"webm\".");
}

TEST(ExportArgumentsTest, TheFilesExtensionMustFitTheFormat) {
    for (const char* file : {"b.mov", "b", "", ".mp4", "mp4", "b.gif/", "b.mp4.txt"})
        EXPECT_EQ(errorOf({"take", "-o", file}), "-o takes a file name that ends in .mp4 or .gif.") << file;
    EXPECT_EQ(errorOf({"take", "--format", "mp4", "-o", "b.gif"}), "-o takes a file name that ends in .mp4.");
    EXPECT_EQ(errorOf({"take", "--format", "gif", "-o", "b"}), "-o takes a file name that ends in .gif.");
}

TEST(ExportArgumentsTest, AGifsRateIsOneOfThree) {
    EXPECT_EQ(ExportArguments::parse({"take"}).choices.gifFPS, 15);
    EXPECT_EQ(ExportArguments::parse({"take", "--fps", "10"}).choices.gifFPS, 10);
    EXPECT_EQ(ExportArguments::parse({"take", "--fps", "24"}).choices.gifFPS, 24);
    EXPECT_EQ(errorOf({"take", "--fps", "30"}), "--fps is one of 10, 15, 24, not \"30\".");
}

TEST(ExportArgumentsTest, AGifLoopsAsAskedOrAsTheEditSays) {
    EXPECT_EQ(ExportArguments::parse({"take"}).choices.gifLoop, std::nullopt);
    EXPECT_EQ(ExportArguments::parse({"take", "--loop"}).choices.gifLoop, true);
    EXPECT_EQ(ExportArguments::parse({"take", "--no-loop"}).choices.gifLoop, false);
    EXPECT_EQ(errorOf({"take", "--loop", "--no-loop"}), "Choose one of --loop and --no-loop.");
}

}  // namespace
}  // namespace tessaloom
