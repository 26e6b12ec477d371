// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ExportStaging.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <string>

#include "support/MountedFolder.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

void write(const fs::path& path, const std::string& text) {
    std::ofstream(path) << text;
}

std::string read(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

class ExportStagingTest : public ::testing::Test {
  protected:
    auto itemCount() const { return std::distance(fs::directory_iterator(folder_.path()), {}); }

    test::TemporaryFolder folder_;
    fs::path destination_ = folder_.path() / "out.mp4";
};

TEST_F(ExportStagingTest, WritesBesideTheDestinationUnderItsName) {
    const ExportStaging staging(destination_);
    EXPECT_NE(staging.url(), destination_);
    EXPECT_EQ(staging.url().filename(), "out.mp4");
    EXPECT_EQ(staging.url().parent_path().parent_path(), folder_.path());
    EXPECT_TRUE(staging.url().parent_path().filename().string().starts_with("."));
}

TEST_F(ExportStagingTest, ACommitReplacesTheOldFileAndCleansUp) {
    write(destination_, "old");
    ExportStaging staging(destination_);
    write(staging.url(), "new");
    EXPECT_EQ(read(destination_), "old");
    staging.commit();
    EXPECT_EQ(read(destination_), "new");
    EXPECT_EQ(itemCount(), 1);
}

TEST_F(ExportStagingTest, WithoutACommitTheOldFileStaysAndNothingElse) {
    write(destination_, "old");
    {
        const ExportStaging staging(destination_);
        write(staging.url(), "half");
    }
    EXPECT_EQ(read(destination_), "old");
    EXPECT_EQ(itemCount(), 1);
}

TEST_F(ExportStagingTest, ACommitThatFailsThrowsAndCleansUp) {
    fs::create_directories(destination_ / "occupied");
    ExportStaging staging(destination_);
    write(staging.url(), "new");
    EXPECT_THROW(staging.commit(), std::system_error);
    EXPECT_EQ(itemCount(), 1);
    EXPECT_TRUE(fs::is_directory(destination_ / "occupied"));
}

TEST_F(ExportStagingTest, AbandonedFoldersAreClearedAwayOnceTheyAreOld) {
    const auto old = folder_.path() / ".tessaloom-export-abcdef";
    const auto young = folder_.path() / ".tessaloom-export-ghijkl";
    const auto foreign = folder_.path() / ".tessaloom";
    for (const auto& path : {old, young, foreign}) {
        fs::create_directory(path);
        write(path / "out.mp4", "half");
    }
    for (const auto& path : {old, foreign})
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::minutes(2));
    const ExportStaging staging(destination_);
    EXPECT_FALSE(fs::exists(old));
    EXPECT_TRUE(fs::exists(young / "out.mp4"));
    EXPECT_TRUE(fs::exists(foreign / "out.mp4"));
}

TEST_F(ExportStagingTest, AnotherExportsFolderIsLeftAlone) {
    const ExportStaging running(destination_);
    write(running.url(), "half");
    fs::last_write_time(running.url().parent_path(),
                        fs::file_time_type::clock::now() - std::chrono::minutes(2));
    { const ExportStaging other(folder_.path() / "other.mp4"); }
    EXPECT_EQ(read(running.url()), "half");
}

/// Runs this in a process without the rights of an administrator, which folders' modes would not stop.
template <typename Action>
bool succeedsWithoutRights(Action action) {
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0)) _exit(2);
        _exit(action() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class LockedFolderTest : public ExportStagingTest {
  protected:
    LockedFolderTest() {
        write(destination_, "old");
        fs::permissions(destination_, fs::perms{0666});
        fs::permissions(folder_.path(), fs::perms{0555});
    }
    ~LockedFolderTest() override { fs::permissions(folder_.path(), fs::perms{0755}); }
};

TEST_F(LockedFolderTest, AFileThatMayBeWrittenIsWrittenItself) {
    EXPECT_TRUE(succeedsWithoutRights([this] {
        ExportStaging staging(destination_);
        if (staging.url() != destination_) return false;
        write(staging.url(), "new");
        staging.commit();
        return true;
    }));
    EXPECT_EQ(read(destination_), "new");
    EXPECT_EQ(itemCount(), 1);
}

TEST_F(LockedFolderTest, AFileThatIsNotThereCannotBeMade) {
    EXPECT_TRUE(succeedsWithoutRights([this] {
        const auto missing = folder_.path() / "missing.mp4";
        const ExportStaging staging(missing);
        return staging.url() == missing && !std::ofstream(missing).is_open();
    }));
    EXPECT_EQ(read(destination_), "old");
}

TEST_F(ExportStagingTest, AFullDiskIsAFailureAndLeavesTheOldFile) {
    const auto mounted = test::MountedFolder::over(folder_.path(), "64k,nr_inodes=2");
    if (!mounted) GTEST_SKIP() << "mounting isn't allowed here";
    write(destination_, "old");
    try {
        const ExportStaging staging(destination_);
        FAIL() << "made a folder in no room";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_space_on_device);
        EXPECT_EQ(std::string(error.what()),
                  "\"" + destination_.string() + "\" can't be written: No space left on device");
    }
    EXPECT_EQ(read(destination_), "old");
}

TEST_F(ExportStagingTest, AReadOnlyDiskLeavesTheOldFileAndTheWriterFails) {
    const auto mounted = test::MountedFolder::over(folder_.path(), "64k");
    if (!mounted) GTEST_SKIP() << "mounting isn't allowed here";
    write(destination_, "old");
    mounted->makeReadOnly();
    {
        const ExportStaging staging(destination_);
        EXPECT_EQ(staging.url(), destination_);
        EXPECT_FALSE(std::ofstream(staging.url()).is_open());
    }
    EXPECT_EQ(read(destination_), "old");
}

TEST_F(ExportStagingTest, AnythingElseThatPreventsAFolderIsAFailureAndLeavesTheOldFile) {
    // So deep that the folder's name, but not the file's, is too long for the system.
    constexpr std::size_t longestPath = 4095;
    fs::path deep = folder_.path();
    while (deep.native().size() + 101 < longestPath - 10)
        deep /= std::string(std::min<std::size_t>(100, longestPath - 10 - deep.native().size() - 1), 'd');
    deep /= std::string(longestPath - 10 - deep.native().size() - 1, 'd');
    fs::create_directories(deep);
    write(deep / "a.mp4", "old");
    EXPECT_THROW(ExportStaging{deep / "a.mp4"}, std::system_error);
    EXPECT_EQ(read(deep / "a.mp4"), "old");
}

}  // namespace
}  // namespace tessaloom
