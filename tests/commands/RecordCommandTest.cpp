// SPDX-License-Identifier: GPL-3.0-or-later
#include <chrono>
#include <optional>

#include "commands/CommandTest.h"
#include "support/VirtualDesktop.h"

namespace tessaloom::test {
namespace {

using RecordCommandTest = CommandTest;

/// More follows: what to do about it.
constexpr const char* noDisplay = "tessaloom: Couldn't start recording: No display available to capture. ";

TEST_F(RecordCommandTest, WithoutADisplayItFailsAtOnceAndLeavesNothing) {
    for (const char* display : {"", ":9876", "words"}) {
        environment_["DISPLAY"] = display;
        expectRefused(run({"record", "--duration", "1"}), 1, noDisplay);
    }
    environment_.erase("DISPLAY");
    expectRefused(run({"record"}), 1, noDisplay);
    expectRefused(run({"record", "--area", "select"}), 1, "There is no screen to select an area on.");
    expectRefused(run({"record", "--pick"}), 1, "There is no screen to pick from.");
    EXPECT_TRUE(namesIn(library()).empty());
}

/// On an X screen, but never as far as recording it.
class RefusedRecordTest : public CommandTest {
  protected:
    RefusedRecordTest() {
        for (const auto& [name, value] : desktop_.environment())
            environment_.emplace(name, value);
    }

    VirtualDesktop desktop_{320, 240};
};

TEST_F(RefusedRecordTest, WhatIsNotThereToRecordIsNamed) {
    expectRefused(run({"record", "--window", "no-such-app", "--title", "News"}), 1,
                  "No visible window matches no-such-app \"News\".");
    expectRefused(run({"record", "--display", "7"}), 1, noDisplay);
    expectRefused(run({"record", "--area", "5000,5000,100,100"}), 1, noDisplay);
    EXPECT_TRUE(namesIn(library()).empty());
}

TEST_F(RefusedRecordTest, ALibraryThatCannotBeWrittenIsNamed) {
    const auto file = folder_.path() / "file";
    writeFile(file, "words");
    for (const auto& path : {file, file / "below"}) {
        environment_["TESSALOOM_LIBRARY"] = path.string();
        expectRefused(run({"record", "--duration", "1", "--countdown", "0"}), 1,
                      "Can't create the recording folder \"" + path.string());
    }
    EXPECT_EQ(contentOf(file), "words");
}

TEST_F(RefusedRecordTest, ASecondRecordingInTheSameSecondLeavesTheFirstAlone) {
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    std::vector<std::filesystem::path> taken;
    for (int second = 0; second < 30; ++second) {
        const std::chrono::local_seconds start(now.time_since_epoch() + std::chrono::seconds(second));
        taken.push_back(library() / TakeBundle::folderName(start));
        std::filesystem::create_directory(taken.back());
        writeFile(taken.back() / "edit.json", "mine");
    }
    expectRefused(run({"record", "--duration", "1", "--countdown", "0"}), 1, "File exists");
    EXPECT_EQ(namesIn(library()).size(), taken.size());
    for (const auto& bundle : taken) {
        EXPECT_EQ(namesIn(bundle), std::vector<std::string>{"edit.json"});
        EXPECT_EQ(contentOf(bundle / "edit.json"), "mine");
    }
}

}  // namespace
}  // namespace tessaloom::test
