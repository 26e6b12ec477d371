// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/OutputFile.h"

#include <gtest/gtest.h>

#include <fstream>

#include "shell/CommandError.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

std::string errorOf(const std::filesystem::path& path) {
    try {
        outputFile(path);
    } catch (const CommandError& error) {
        return error.what();
    }
    return {};
}

TEST(OutputFileTest, APlainNameLiesInTheCurrentFolder) {
    EXPECT_EQ(outputFile("film.mp4"), std::filesystem::current_path() / "film.mp4");
}

TEST(OutputFileTest, AnExistingFileMayBeReplaced) {
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "film.mp4";
    std::ofstream(file) << "old";
    EXPECT_EQ(outputFile(file), file);
}

TEST(OutputFileTest, AFolderThatIsMissingOrAFileIsNamed) {
    const test::TemporaryFolder folder;
    const auto file = folder.path() / "notes.txt";
    std::ofstream(file) << "words";
    for (const auto& parent : {folder.path() / "nowhere", file}) {
        EXPECT_EQ(errorOf(parent / "film.mp4"), "There is no folder \"" + parent.string() +
                                                    "\". Make it first, or choose another with -o.");
    }
}

TEST(OutputFileTest, AFolderIsNotReplaced) {
    const test::TemporaryFolder folder;
    const auto path = folder.path() / "film.mp4";
    std::filesystem::create_directory(path);
    EXPECT_EQ(errorOf(path), "\"" + path.string() + "\" is a folder. Name a file with -o.");
}

}  // namespace
}  // namespace tessaloom
