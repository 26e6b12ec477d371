// SPDX-License-Identifier: GPL-3.0-or-later
#include <chrono>

#include "commands/CommandTest.h"
#include "support/MovieMaker.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

using ExportProgressTest = CommandTest;

TEST_F(ExportProgressTest, ATerminalShowsHowFarAnExportIsAndHowLongItStillTakes) {
    const auto take = makeRecording("long");
    writeRecordedMovie(take.file(TakeBundle::screenFile), 640, 360, plainPictures(1, 1, pureGreen));
    EventLog log;
    log.captureRect = {.x = 0, .y = 0, .width = 640, .height = 360, .displayScaleFactor = 1};
    // Its pointer goes to and fro all the time, so that every frame is drawn.
    for (int second = 0; second < 1800; ++second)
        log.cursorSamples.push_back({.pts = static_cast<double>(second), .x = second % 2 * 0.9, .y = 0.5});
    take.write(log);
    for (const char* name : {"film.mp4", "film.gif"}) {
        const std::string exporting =
            std::string(TESSALOOM_PROGRAM) + " export long -o '" + (outputs() / name).string() + "'";
        // What it writes to a terminal, this passes on.
        ChildProcess process({"script", "--quiet", "--command", exporting, "/dev/null"}, environment_);
        EXPECT_TRUE(process.waitForOutput("Exporting  ", 10s)) << name;
        EXPECT_TRUE(process.waitForOutput("s left", 20s)) << name << process.output();
    }
}

}  // namespace
}  // namespace tessaloom::test
