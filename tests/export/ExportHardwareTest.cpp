// SPDX-License-Identifier: GPL-3.0-or-later
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>

#include "export/ExporterFixture.h"
#include "media/MediaError.h"
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
        const HardwareEncoding& hardware, std::function<void()> disturbance = [] {}) {
        Exporter exporter = Exporter::prepare(
            bundle_, settings({{0, 1}}),
            [&] { return std::make_unique<DisturbedRenderer>(drawn_, std::move(disturbance)); }, hardware);
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
    std::stop_source stop_;
};

TEST_F(ExportHardwareTest, TheHardwareEncodesWhereItCan) {
    exportWith({.exported = &mainProfile, .marker = marker_});
    expectWholeMovie("Main");
    EXPECT_FALSE(fs::exists(marker_));
}

TEST_F(ExportHardwareTest, AnEncoderThatCannotBeOpenedIsReplacedByTheProcessor) {
    exportWith({.exported = &missingEncoder, .marker = marker_});
    expectWholeMovie("High");
    EXPECT_FALSE(fs::exists(marker_));
}

TEST_F(ExportHardwareTest, WithOrWithoutAGraphicsCardThereIsAMovie) {
    exportWith({.exported = &H264Settings::exportedByNvenc, .marker = marker_});
    expectWholeMovie("High");
    EXPECT_FALSE(fs::exists(marker_));
}

TEST_F(ExportHardwareTest, AnEncoderThatGivesUpHalfWayIsReplacedByTheProcessor) {
    exportWith({.exported = &mainProfile, .marker = marker_}, [] { throw EncodingError("It hangs."); });
    expectWholeMovie("High");
    EXPECT_FALSE(fs::exists(marker_));
}

TEST_F(ExportHardwareTest, ADriverThatTookTheProcessDownIsLeftAloneUntilThereIsAnother) {
    const HardwareEncoding crashing{.exported = &mainProfile, .marker = marker_};
    const pid_t child = fork();
    if (child == 0) {
        exportWith(crashing, [] { raise(SIGKILL); });
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    fs::remove_all(destination_.parent_path());
    fs::create_directory(destination_.parent_path());

    exportWith(crashing);
    expectWholeMovie("High");
    EXPECT_TRUE(fs::exists(marker_));
    exportWith({.exported = &mainProfile, .marker = folder_.path() / "state" / "newer"});
    expectWholeMovie("Main");
}

TEST_F(ExportHardwareTest, WhatIsNotTheEncodersFaultIsNotTriedAgain) {
    const HardwareEncoding hardware{.exported = &mainProfile, .marker = marker_};
    int tries = 0;
    const auto fail = [&tries] {
        ++tries;
        throw MediaError("The disk is full.");
    };
    EXPECT_THROW(exportWith(hardware, fail), MediaError);
    EXPECT_EQ(tries, 1);
    EXPECT_THROW(exportWith(hardware, [this] { stop_.request_stop(); }), ExportCancelled);
    EXPECT_EQ(filesAtDestination(), 0);
    EXPECT_FALSE(fs::exists(marker_));
}

}  // namespace
}  // namespace tessaloom::test
