// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AtomicFile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <system_error>

#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

std::size_t entries(const std::filesystem::path& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

TEST(AtomicFile, ReplacesTheContentAndLeavesNothingElse) {
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "edit.json";
    replaceFile(path, "first, and longer");
    replaceFile(path, "second");
    EXPECT_EQ(readFile(path), "second");
    EXPECT_EQ(entries(folder.path()), 1U);
}

TEST(AtomicFile, ANewFileTakesNoOnesPlace) {
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "edit.json";
    writeNewFile(path, "first");
    EXPECT_THROW(writeNewFile(path, "second"), std::system_error);
    EXPECT_EQ(readFile(path), "first");
    EXPECT_EQ(entries(folder.path()), 1U);
}

TEST(AtomicFile, WhatIsNoFileIsNotRead) {
    const test::TemporaryFolder folder;
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const auto& path : {pipe, folder.path(), std::filesystem::path("/dev/zero")})
        EXPECT_THROW(readFile(path), std::system_error) << path;
}

TEST(AtomicFile, AMissingFolderIsAnErrorThatNamesTheFile) {
    const test::TemporaryFolder folder;
    try {
        replaceFile(folder.path() / "nowhere" / "edit.json", "x");
        FAIL() << "no error";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_NE(std::string(error.what()).find("edit.json"), std::string::npos);
    }
    EXPECT_THROW(readFile(folder.path() / "none"), std::system_error);
}

// Runs in a child with a file size limit, which a full disk resembles: the write comes back short.
int replaceUnderALimit(const std::filesystem::path& path) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{100, 100};
    setrlimit(RLIMIT_FSIZE, &limit);
    try {
        replaceFile(path, std::string(1000, 'x'));
    } catch (const std::system_error& error) {
        return error.code() == std::errc::file_too_large ? 0 : 2;
    }
    return 1;
}

TEST(AtomicFile, AFailedWriteKeepsTheOldFileAndLeavesNothingElse) {
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "edit.json";
    replaceFile(path, "old");
    const pid_t child = fork();
    if (child == 0) _exit(replaceUnderALimit(path));
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(readFile(path), "old");
    EXPECT_EQ(entries(folder.path()), 1U);
}

}  // namespace
}  // namespace tessaloom
