// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <csignal>
#include <thread>

#include "commands/CommandTest.h"
#include "support/GifProbe.h"
#include "support/MountedFolder.h"
#include "support/MovieProbe.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class ExportCommandTest : public CommandTest {
  protected:
    /// Its cursor moves for half an hour, so that every frame is drawn and the export is far from its end.
    void makeEndlessRecording() const {
        EventLog log;
        log.captureRect = {.x = 0, .y = 0, .width = 64, .height = 36, .displayScaleFactor = 1};
        log.cursorSamples = {{.pts = 0, .x = 0, .y = 0}, {.pts = 40'000, .x = 1, .y = 1}};
        makeRecording("endless").write(log);
    }

    std::vector<std::string> exportCommand(const std::string& recording) const {
        return command({"export", recording, "-o", film_.string()});
    }

    /// The hidden folder of a running export, once its file is in it.
    fs::path waitForStaging() const {
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        while (std::chrono::steady_clock::now() < deadline) {
            for (const auto& entry : fs::directory_iterator(outputs())) {
                if (fs::exists(entry.path() / film_.filename())) return entry.path();
            }
            std::this_thread::sleep_for(5ms);
        }
        ADD_FAILURE() << "no export began";
        return {};
    }

    fs::path film_ = outputs() / "film.mp4";
};

TEST_F(ExportCommandTest, ItPrintsThePathOfTheNewFile) {
    makeRecording("take");
    writeFile(film_, "old");
    const CommandResult result = run({"export", "take", "-o", film_.string()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, film_.string() + "\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(outputNames(), std::vector<std::string>{"film.mp4"});
    const MovieFacts facts = probeMovie(film_);
    EXPECT_EQ(facts.packets.size(), 55U);
    EXPECT_EQ(facts.width, 64);
    EXPECT_EQ(facts.height, 36);
}

TEST_F(ExportCommandTest, ByItselfTheFileIsTheRecordingsNameInTheCurrentFolder) {
    makeRecording("My take 1.5");
    ChildProcess process({"env", "-C", outputs().string(), TESSALOOM_PROGRAM, "export", "My take 1.5"},
                         environment_);
    const CommandResult result = finished(process);
    EXPECT_EQ(result.output, (outputs() / "My take 1.5.mp4").string() + "\n");
    EXPECT_EQ(outputNames(), std::vector<std::string>{"My take 1.5.mp4"});
}

TEST_F(ExportCommandTest, ASpeedThatIsNoneIsSaidAndExportedAsOne) {
    const TakeBundle bundle = makeRecording("take");
    for (const double speed : {0.0, -1.5}) {
        EditParams edit;
        edit.speed = speed;
        bundle.write(edit);
        const CommandResult result = run({"export", "take", "-o", film_.string()});
        EXPECT_EQ(result.status, 0);
        EXPECT_TRUE(result.errors.starts_with("tessaloom: A recording can't be played at a speed of "))
            << result.errors;
        EXPECT_NE(result.errors.find("it is exported at normal speed."), std::string::npos) << result.errors;
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
        EXPECT_EQ(probeMovie(film_).packets.size(), 55U);
        const CommandResult facts = run({"inspect", "edit", "take"});
        EXPECT_NE(facts.output.find("\"speed\": " + std::string(speed == 0 ? "0" : "-1.5")),
                  std::string::npos);
        EXPECT_EQ(facts.errors, "");
    }
}

TEST_F(ExportCommandTest, TheMovieHasTheEditsSound) {
    const TakeBundle bundle = makeRecording("take");
    EditParams edit;
    edit.music = MusicPreset::lofi;
    bundle.write(edit);
    EXPECT_EQ(run({"export", "take", "-o", film_.string()}).status, 0);
    const auto sound = probeSound(film_);
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->codec, "aac");
    EXPECT_NEAR(sound->duration, 55.0 / 60, 0.01);
}

TEST_F(ExportCommandTest, AGifIsMadeWhereTheFilesNameOrTheFormatSaysSo) {
    makeRecording("take");
    const fs::path gif = outputs() / "film.gif";
    EXPECT_EQ(run({"export", "take", "-o", gif.string(), "--fps", "10", "--no-loop"}).output,
              gif.string() + "\n");
    const GifFacts facts = probeGif(gif);
    EXPECT_EQ(facts.delays(), std::vector<int>(9, 10));
    EXPECT_EQ(facts.loopCount, std::nullopt);
    EXPECT_EQ(facts.width, 64);
    ChildProcess process(
        {"env", "-C", outputs().string(), TESSALOOM_PROGRAM, "export", "take", "--format", "gif"},
        environment_);
    EXPECT_EQ(finished(process).output, (outputs() / "take.gif").string() + "\n");
    EXPECT_EQ(probeGif(outputs() / "take.gif").loopCount, 0);
    EXPECT_EQ(outputNames(), (std::vector<std::string>{"film.gif", "take.gif"}));
}

TEST_F(ExportCommandTest, AGifThatCannotBeWrittenLeavesTheOldFileAndNothingElse) {
    const auto disk = MountedFolder::over(outputs(), "8k");
    if (!disk) GTEST_SKIP() << "this process isn't allowed to mount a small disk";
    makeRecording("take");
    const fs::path gif = outputs() / "film.gif";
    writeFile(gif, "old");
    writeFile(outputs() / "filler", std::string(4096, 'x'));
    const std::vector<std::string> command{"export", "take", "-o", gif.string()};
    const CommandResult full = run(command);
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(
        full.errors,
        "tessaloom: GIF: the encoder refused the file (14 of 14 frames)\n"
        "tessaloom: Couldn't write the GIF. No space left on device. Check the folder and the free space.\n");
    EXPECT_EQ(outputNames(), (std::vector<std::string>{"filler", "film.gif"}));
    EXPECT_EQ(contentOf(gif), "old");
    disk->makeReadOnly();
    expectRefused(run(command), 1, "Couldn't write the GIF. Read-only file system.");
    EXPECT_EQ(contentOf(gif), "old");
}

TEST_F(ExportCommandTest, AnInterruptedGifLeavesTheOldFileAndNothingElse) {
    makeEndlessRecording();
    film_ = outputs() / "film.gif";
    writeFile(film_, "old");
    ChildProcess process(exportCommand("endless"), environment_);
    waitForStaging();
    process.signal(SIGINT);
    const CommandResult result = finished(process);
    EXPECT_EQ(result.status, 130);
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_EQ(outputNames(), std::vector<std::string>{"film.gif"});
    EXPECT_EQ(contentOf(film_), "old");
}

TEST_F(ExportCommandTest, ACameraThatCannotBeReadIsNamed) {
    const TakeBundle take = makeRecording("take");
    EditParams edit;
    edit.webcam.enabled = true;
    take.write(edit);
    writeFile(take.file(TakeBundle::webcamFile), "words");
    expectRefused(run({"export", "take", "-o", film_.string()}), 1, "\"webcam.mov\" can't be read: ");
    expectRefused(run({"frame", "take", "--at", "0.5", "-o", (outputs() / "a.png").string()}), 1,
                  "\"webcam.mov\" can't be read: ");
    EXPECT_TRUE(outputNames().empty());
}

TEST_F(ExportCommandTest, WhatIsNoRecordingIsRefused) {
    expectRefused(run({"export", "nowhere", "-o", film_.string()}), 1, "No recording called \"nowhere\".");
    expectRefused(run({"export", outputs().string(), "-o", film_.string()}), 1, "is no recording");
    EXPECT_TRUE(outputNames().empty());
}

TEST_F(ExportCommandTest, ADestinationThatCannotBeIsRefused) {
    makeRecording("take");
    writeFile(outputs() / "file", "words");
    fs::create_directory(outputs() / "folder.mp4");
    fs::create_directory(outputs() / "folder.gif");
    for (const char* folder : {"nowhere", "file"}) {
        const auto place = outputs() / folder;
        expectRefused(run({"export", "take", "-o", (place / "film.mp4").string()}), 1,
                      "There is no folder \"" + place.string() + "\".");
        expectRefused(run({"frame", "take", "--at", "0", "-o", (place / "a.png").string()}), 1,
                      "There is no folder \"" + place.string() + "\".");
    }
    for (const char* folder : {"folder.mp4", "folder.gif"})
        expectRefused(run({"export", "take", "-o", (outputs() / folder).string()}), 1, "is a folder.");
    EXPECT_EQ(outputNames(), (std::vector<std::string>{"file", "folder.gif", "folder.mp4"}));
    EXPECT_EQ(contentOf(outputs() / "file"), "words");
}

TEST_F(ExportCommandTest, AFullDiskLeavesTheOldFileAndNothingElse) {
    const auto disk = MountedFolder::over(outputs(), "64k");
    if (!disk) GTEST_SKIP() << "this process isn't allowed to mount a small disk";
    makeRecording("take");
    writeFile(outputs() / "filler", std::string(40'000, 'x'));
    writeFile(film_, "old");
    writeFile(outputs() / "a.png", "old");
    writeFile(outputs() / "more filler", std::string(60'000, 'x'));
    expectRefused(run({"export", "take", "-o", film_.string()}), 1,
                  "No space left on device. Check the folder and the free space.");
    expectRefused(
        run({"frame", "take", "--at", "0", "--size", "640x360", "-o", (outputs() / "a.png").string()}), 1,
        "Check the folder and the free space.");
    EXPECT_EQ(outputNames(), (std::vector<std::string>{"a.png", "filler", "film.mp4", "more filler"}));
    EXPECT_EQ(contentOf(film_), "old");
    EXPECT_EQ(contentOf(outputs() / "a.png"), "old");
}

TEST_F(ExportCommandTest, AReadOnlyDiskKeepsTheOldFile) {
    const auto disk = MountedFolder::over(outputs(), "64k");
    if (!disk) GTEST_SKIP() << "this process isn't allowed to mount a small disk";
    makeRecording("take");
    writeFile(film_, "old");
    disk->makeReadOnly();
    expectRefused(run({"export", "take", "-o", film_.string()}), 1, "Read-only file system.");
    EXPECT_EQ(contentOf(film_), "old");
}

TEST_F(ExportCommandTest, AFileThatMayNotGrowLeavesTheOldFileAndNothingElse) {
    makeRecording("take");
    writeFile(film_, "old");
    std::vector<std::string> limited{"sh", "-c", "ulimit -f 1; exec \"$@\"", "sh"};
    const auto command = exportCommand("take");
    limited.insert(limited.end(), command.begin(), command.end());
    ChildProcess process(limited, environment_);
    expectRefused(finished(process), 1, "can't be written: File too large.");
    EXPECT_EQ(outputNames(), std::vector<std::string>{"film.mp4"});
    EXPECT_EQ(contentOf(film_), "old");
}

TEST_F(ExportCommandTest, AnInterruptLeavesTheOldFileAndNothingElse) {
    makeEndlessRecording();
    writeFile(film_, "old");
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        ChildProcess process(exportCommand("endless"), environment_);
        waitForStaging();
        process.signal(signal);
        const CommandResult result = finished(process);
        EXPECT_EQ(result.status, 130) << signal;
        EXPECT_EQ(result.output + result.errors, "") << signal;
        EXPECT_EQ(outputNames(), std::vector<std::string>{"film.mp4"}) << signal;
        EXPECT_EQ(contentOf(film_), "old") << signal;
    }
}

TEST_F(ExportCommandTest, WhatAKilledExportLeftIsClearedAwayByTheNext) {
    makeEndlessRecording();
    makeRecording("take");
    fs::path abandoned;
    {
        ChildProcess process(exportCommand("endless"), environment_);
        abandoned = waitForStaging();
        process.signal(SIGKILL);
        EXPECT_EQ(finished(process).status, 128 + SIGKILL);
    }
    ASSERT_TRUE(fs::exists(abandoned));
    fs::last_write_time(abandoned, fs::file_time_type::clock::now() - 2min);
    EXPECT_EQ(run({"export", "take", "-o", film_.string()}).status, 0);
    EXPECT_EQ(outputNames(), std::vector<std::string>{"film.mp4"});
}

TEST_F(ExportCommandTest, ALongExportIsNotClearedAwayByAnother) {
    makeEndlessRecording();
    makeRecording("take");
    ChildProcess process(exportCommand("endless"), environment_);
    const fs::path running = waitForStaging();
    fs::last_write_time(running, fs::file_time_type::clock::now() - 2min);
    EXPECT_EQ(run({"export", "take", "-o", (outputs() / "other.mp4").string()}).status, 0);
    EXPECT_TRUE(fs::exists(running / "film.mp4"));
}

}  // namespace
}  // namespace tessaloom::test
