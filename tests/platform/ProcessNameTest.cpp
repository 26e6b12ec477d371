// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/ProcessName.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

class ProcessName : public ::testing::Test {
  protected:
    /// As soon as it is the program itself that runs.
    static std::string nameOf(const test::ChildProcess& process, const std::string& expected) {
        std::string name;
        for (int round = 0; round < 500 && name != expected; ++round, std::this_thread::sleep_for(10ms))
            name = processName(static_cast<std::uint32_t>(process.id()));
        return name;
    }
    std::string file(const std::string& name) const { return (folder.path() / name).string(); }
    void makeScript(const std::string& name) const {
        std::ofstream(file(name)) << "#!/bin/sh\nsleep 60\nexit\n";
        std::filesystem::permissions(file(name), std::filesystem::perms::owner_all);
    }

    test::TemporaryFolder folder;
};

TEST_F(ProcessName, IsWholeHoweverLong) {
    const std::string name = "greenhouse-temperature-control";
    std::filesystem::copy_file("/bin/sleep", file(name));
    const test::ChildProcess process({file(name), "60"}, test::currentEnvironment());
    EXPECT_EQ(nameOf(process, name), name);
    std::filesystem::remove(file(name));
    EXPECT_EQ(nameOf(process, name), name) << "as after an update of the program";
}

TEST_F(ProcessName, OfAScriptIsItsOwn) {
    for (const std::string name : {"greenhouse", "greenhouse-temperature-control.sh"}) {
        makeScript(name);
        const test::ChildProcess process({file(name)}, test::currentEnvironment());
        EXPECT_EQ(nameOf(process, name), name);
    }
}

TEST_F(ProcessName, OfALinkIsTheLinks) {
    std::filesystem::create_symlink("/bin/sleep", file("greenhouse"));
    const test::ChildProcess process({file("greenhouse"), "60"}, test::currentEnvironment());
    EXPECT_EQ(nameOf(process, "greenhouse"), "greenhouse");
}

TEST_F(ProcessName, OfNoneIsEmpty) {
    EXPECT_EQ(processName(0), "");
}

}  // namespace
}  // namespace tessaloom
