// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/DesktopEntries.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

class DesktopEntries : public ::testing::Test {
  protected:
    void add(const std::string& path, const std::string& text) {
        const auto file = folder.path() / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    std::vector<DesktopEntry> entries() const {
        return readDesktopEntries({folder.path() / "own", folder.path() / "missing", folder.path() / "all"});
    }
    std::string nameOf(const std::string& windowClass) const {
        const auto all = entries();
        const DesktopEntry* entry = entryOfWindowClass(all, windowClass);
        return entry == nullptr ? "nobody" : entry->name;
    }

    test::TemporaryFolder folder;
};

TEST_F(DesktopEntries, AreFoundByTheClassTheyNameTheirIdOrItsLastPart) {
    add("all/browser.desktop", "[Desktop Entry]\nName=Web Browser\nStartupWMClass=Navigator\n");
    add("all/org.example.Files.desktop", "[Desktop Entry]\nName = Files\n");
    EXPECT_EQ(nameOf("navigator"), "Web Browser");
    EXPECT_EQ(nameOf("Browser"), "Web Browser");
    EXPECT_EQ(nameOf("org.example.files"), "Files");
    EXPECT_EQ(nameOf("files"), "Files");
    EXPECT_EQ(nameOf("file"), "nobody");
    EXPECT_EQ(nameOf(""), "nobody");
}

TEST_F(DesktopEntries, OfActionsAndTranslationsAreNotTheName) {
    add("all/a.desktop",
        "[Desktop Entry]\nName=Editor\nName[de]=Bearbeiter\n[Desktop Action new]\nName=New Window\n");
    EXPECT_EQ(nameOf("a"), "Editor");
}

TEST_F(DesktopEntries, OfTheUserCountBeforeEverybodys) {
    add("own/a.desktop", "[Desktop Entry]\nName=Mine\n");
    add("all/a.desktop", "[Desktop Entry]\nName=Everybody's\n");
    EXPECT_EQ(nameOf("a"), "Mine");
}

TEST_F(DesktopEntries, InFoldersHaveDashesInTheirIds) {
    add("all/kde/viewer.desktop", "[Desktop Entry]\nName=Viewer\n");
    ASSERT_EQ(entries().size(), 1U);
    EXPECT_EQ(entries()[0].id, "kde-viewer");
}

TEST_F(DesktopEntries, WithoutANameAreLeftOut) {
    add("all/broken.desktop", "not an entry");
    EXPECT_TRUE(entries().empty());
}

}  // namespace
}  // namespace tessaloom
