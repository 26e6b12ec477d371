// SPDX-License-Identifier: GPL-3.0-or-later
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>

#include "export/ExporterFixture.h"
#include "media/MediaError.h"
#include "support/LogLines.h"
#include "support/MovieProbe.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;

/// Stands in for a graphics card's encoder; its movies tell by their profile who made them.
H264Settings mainProfile(int width, int height, std::int64_t bitRate) {
    auto settings = H264Settings::exported(width, height, bitRate);
    std::ranges::find(settings.options, "profile", &std::pair<std::string, std::string>::first)->second =
        "main";
    return settings;
}

H264Settings missingEncoder(int width, int height, std::int64_t bitRate) {
    auto settings = H264Settings::exported(width, height, bitRate);
    settings.encoder = "h264_missing";
    return settings;
}

H264Settings missingDevice(int width, int height, std::int64_t bitRate) {
    return H264Settings::exportedByVaapi(width, height, bitRate, "/dev/dri/missing", false);
}

bool sameBytes(const fs::path& a, const fs::path& b) {
    std::ifstream first(a, std::ios::binary);
    std::ifstream second(b, std::ios::binary);
    return std::equal(std::istreambuf_iterator<char>(first), {}, std::istreambuf_iterator<char>(second), {});
}

/// Does something at its tenth frame, once.
class DisturbedRenderer final : public PlainRenderer {
  public:
    DisturbedRenderer(int& drawn, std::function<void()> disturbance)
        : PlainRenderer(drawn), disturbance_(std::move(disturbance)) {}

    using PlainRenderer::render;
    void render(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) override {
        if (++frames_ == 10) disturbance_();
        PlainRenderer::render(frame, sources, target);
    }

  private:
    std::function<void()> disturbance_;
    int frames_ = 0;
};

class ExportHardwareTest : public ExporterTest {
  protected:
    ExportHardwareTest() {
        auto pictures = plainPictures(30, 30, black);
        for (std::size_t n = 0; n < pictures.size(); n += 2)
            pictures[n].color = white;
        record(pictures);
    }

    void exportWith(
        std::vector<HardwareEncoding> hardware, std::function<void()> disturbance = [] {}) {
        Exporter exporter = Exporter::prepare(
            bundle_, settings({{0, 1}}),
            [&] { return std::make_unique<DisturbedRenderer>(drawn_, std::move(disturbance)); },
            std::move(hardware));
        exporter.exportVideo(
            destination_, [](double) {}, stop_.get_token());
    }

    void expectWholeMovie(const std::string& profile) const {
        const MovieFacts facts = probeMovie(destination_);
        EXPECT_EQ(facts.profile, profile);
        EXPECT_EQ(facts.packets.size(), 60U);
        EXPECT_EQ(brightFrames(destination_).size(), 30U);
        EXPECT_EQ(filesAtDestination(), 1);
    }

    fs::path marker_ = folder_.path() / "state" / "attempt";
    fs::path newer_ = folder_.path() / "state" / "newer";
    std::stop_source stop_;
};

TEST_F(ExportHardwareTest, TheHardwareEncodesWhereItCan) {
    exportWith({{.exported = &mainProfile, .marker = marker_}});
    expectWholeMovie("Main");
    EXPECT_FALSE(fs::exists(marker_));
}

TEST_F(ExportHardwareTest, AnEncoderThatCannotBeOpenedIsReplacedByTheProcessor) {
    exportWith({{.exported = &missingEncoder, .marker = marker_}});
    expectWholeMovie("High");
    EXPECT_FALSE(fs::exists(marker_));
}

TEST_F(ExportHardwareTest, WithOrWithoutAGraphicsCardThereIsAMovie) {
    exportWith({{.exported = &H264Settings::exportedByNvenc, .marker = marker_}});
    expectWholeMovie("High");
    EXPECT_FALSE(fs::exists(marker_));
}

TEST_F(ExportHardwareTest, ADeviceThatIsMissingLeavesNoTraceInTheMovie) {
    exportWith({});
    const auto expected = fs::path(destination_).replace_filename("expected.mp4");
    fs::rename(destination_, expected);
    exportWith({{.exported = &missingDevice, .marker = marker_}});
    EXPECT_TRUE(sameBytes(destination_, expected));
    fs::remove(expected);
    EXPECT_EQ(filesAtDestination(), 1);
}

TEST_F(ExportHardwareTest, AnEncoderThatFailsIsFollowedByTheNextAndALineInTheLog) {
    const LogLines log;
    exportWith({{.exported = &missingEncoder, .marker = marker_},
                {.exported = &missingDevice, .marker = marker_},
                {.exported = &mainProfile, .marker = newer_}});
    expectWholeMovie("Main");
    EXPECT_TRUE(log.contains("(attempt): This FFmpeg has no h264_missing encoder."));
    EXPECT_TRUE(log.contains("(attempt): The graphics device can't be opened"));
    EXPECT_FALSE(log.contains("(newer)"));
}

TEST_F(ExportHardwareTest, EachEncoderHasItsOwnMarkerForAsLongAsItRuns) {
    int looks = 0;
    exportWith(
        {{.exported = &missingEncoder, .marker = marker_}, {.exported = &mainProfile, .marker = newer_}},
        [&] {
            ++looks;
            EXPECT_FALSE(fs::exists(marker_));
            EXPECT_TRUE(fs::exists(newer_));
        });
    EXPECT_EQ(looks, 1);
    EXPECT_FALSE(fs::exists(newer_));
}

TEST_F(ExportHardwareTest, TheNextEncoderIsUsedWhereTheFirstCrashed) {
    fs::create_directory(marker_.parent_path());
    std::ofstream(marker_).put('\n');
    exportWith({{.exported = &H264Settings::exported, .marker = marker_},
                {.exported = &mainProfile, .marker = newer_}});
    expectWholeMovie("Main");
    EXPECT_TRUE(fs::exists(marker_));
}

TEST_F(ExportHardwareTest, AnEncoderThatGivesUpHalfWayIsReplacedByTheProcessor) {
    exportWith({{.exported = &mainProfile, .marker = marker_}}, [] { throw EncodingError("It hangs."); });
    expectWholeMovie("High");
    EXPECT_FALSE(fs::exists(marker_));
}

TEST_F(ExportHardwareTest, ADriverThatTookTheProcessDownIsLeftAloneUntilThereIsAnother) {
    const HardwareEncoding crashing{.exported = &mainProfile, .marker = marker_};
    const pid_t child = fork();
    if (child == 0) {
        exportWith({crashing}, [] { raise(SIGKILL); });
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    fs::remove_all(destination_.parent_path());
    fs::create_directory(destination_.parent_path());

    exportWith({crashing});
    expectWholeMovie("High");
    EXPECT_TRUE(fs::exists(marker_));
    exportWith({{.exported = &mainProfile, .marker = newer_}});
    expectWholeMovie("Main");
}

TEST_F(ExportHardwareTest, WhatIsNotTheEncodersFaultIsNotTriedAgain) {
    const HardwareEncoding hardware{.exported = &mainProfile, .marker = marker_};
    int tries = 0;
    const auto fail = [&tries] {
        ++tries;
        throw MediaError("The disk is full.");
    };
    EXPECT_THROW(exportWith({hardware}, fail), MediaError);
    EXPECT_EQ(tries, 1);
    EXPECT_THROW(exportWith({hardware}, [this] { stop_.request_stop(); }), ExportCancelled);
    EXPECT_EQ(filesAtDestination(), 0);
    EXPECT_FALSE(fs::exists(marker_));
}

}  // namespace
}  // namespace tessaloom::test
