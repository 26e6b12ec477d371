// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ExportStaging.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <string>

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

TEST_F(ExportStagingTest, WithoutAFolderItWritesToTheDestination) {
    const fs::path unreachable = folder_.path() / "no such folder" / "out.mp4";
    ExportStaging staging(unreachable);
    EXPECT_EQ(staging.url(), unreachable);
    EXPECT_NO_THROW(staging.commit());
}

}  // namespace
}  // namespace tessaloom
