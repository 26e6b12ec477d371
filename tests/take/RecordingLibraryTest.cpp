// SPDX-License-Identifier: GPL-3.0-or-later
#include "take/RecordingLibrary.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <limits>

#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr auto all = std::numeric_limits<std::size_t>::max();

class RecordingLibraryTest : public ::testing::Test {
  protected:
    RecordingLibraryTest() { fs::create_directory(library_.folder()); }

    fs::path add(const std::string& name) const {
        fs::create_directory(library_.folder() / name);
        return library_.folder() / name;
    }
    std::vector<std::string> namesOf(std::size_t limit) const {
        std::vector<std::string> names;
        for (const TakeBundle& bundle : library_.recentBundles(limit))
            names.push_back(bundle.url.filename());
        return names;
    }

    test::TemporaryFolder folder_;
    RecordingLibrary library_{folder_.path() / "library"};
};

TEST_F(RecordingLibraryTest, TheNewestComesFirst) {
    const auto now = fs::file_time_type::clock::now();
    fs::last_write_time(add("middle.takes"), now - 2h);
    fs::last_write_time(add("old.takes"), now - 3h);
    fs::last_write_time(add("new.takes"), now - 1h);
    EXPECT_EQ(namesOf(all), (std::vector<std::string>{"new.takes", "middle.takes", "old.takes"}));
    EXPECT_EQ(namesOf(2), (std::vector<std::string>{"new.takes", "middle.takes"}));
    EXPECT_TRUE(namesOf(0).empty());
}

TEST_F(RecordingLibraryTest, OtherThingsInTheFolderAreNotListed) {
    add("a.takes");
    add("plain folder");
    std::ofstream(library_.folder() / "notes.txt") << "words";
    EXPECT_EQ(namesOf(all), std::vector<std::string>{"a.takes"});
}

TEST_F(RecordingLibraryTest, AFolderThatCannotBeListedHoldsNone) {
    std::ofstream(folder_.path() / "file") << "words";
    for (const char* name : {"nowhere", "file", "file/below"}) {
        const RecordingLibrary library(folder_.path() / name);
        EXPECT_TRUE(library.recentBundles(all).empty()) << name;
        EXPECT_EQ(library.find("a"), std::nullopt) << name;
    }
}

TEST_F(RecordingLibraryTest, FindsByNameWithAndWithoutTheExtension) {
    const TakeBundle bundle{add("Recording 2026-11-15 at 14.05.09.takes")};
    EXPECT_EQ(library_.find("Recording 2026-11-15 at 14.05.09"), bundle);
    EXPECT_EQ(library_.find("Recording 2026-11-15 at 14.05.09.takes"), bundle);
    EXPECT_EQ(library_.find("Recording 2026-11-15"), std::nullopt);
    EXPECT_EQ(library_.find(""), std::nullopt);
}

TEST_F(RecordingLibraryTest, FindsByPathAndIgnoresASlashAtItsEnd) {
    const TakeBundle bundle{add("a.takes")};
    EXPECT_EQ(library_.find(bundle.url.string()), bundle);
    EXPECT_EQ(library_.find(bundle.url.string() + "/"), bundle);
    EXPECT_EQ(library_.find(library_.folder().string() + "/../library/./a.takes"), bundle);
    EXPECT_EQ(library_.find(library_.folder().string() + "/b.takes"), std::nullopt);
}

TEST_F(RecordingLibraryTest, ARelativePathBecomesAbsolute) {
    const TakeBundle bundle{add("a.takes")};
    const auto before = fs::current_path();
    fs::current_path(library_.folder());
    const auto found = library_.find("./a.takes");
    fs::current_path(before);
    EXPECT_EQ(found, bundle);
}

TEST_F(RecordingLibraryTest, AFileIsNoRecording) {
    std::ofstream(library_.folder() / "file.takes") << "words";
    EXPECT_EQ(library_.find("file"), std::nullopt);
    EXPECT_EQ(library_.find((library_.folder() / "file.takes").string()), std::nullopt);
}

TEST_F(RecordingLibraryTest, AnyOfARecordingsFilesMakesAFolderOne) {
    for (const char* file : {"screen.mov", "events.json", "edit.json"}) {
        const auto folder = add(std::string("with ") + file);
        EXPECT_FALSE(isBundle(folder));
        std::ofstream(folder / file) << "";
        EXPECT_TRUE(isBundle(folder)) << file;
    }
    const auto other = add("other");
    for (const char* file : {"audio.m4a", "webcam.mov", "notes.txt"})
        std::ofstream(other / file) << "";
    EXPECT_FALSE(isBundle(other));
    EXPECT_FALSE(isBundle(folder_.path() / "nowhere"));
}

}  // namespace
}  // namespace tessaloom
