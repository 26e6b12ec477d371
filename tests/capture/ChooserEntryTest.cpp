// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ChooserEntry.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

const ShareableWindow editor{.id = 3,
                             .frame = {10, 20, 300, 200},
                             .applicationName = "Editor",
                             .bundleIdentifier = "editor",
                             .title = "notes.txt"};

std::vector<std::pair<QString, QString>> captions(const ShareableContent& content) {
    std::vector<std::pair<QString, QString>> texts;
    for (const ChooserEntry& entry : chooserEntries(content))
        texts.emplace_back(entry.title, entry.detail);
    return texts;
}

TEST(ChooserEntries, AreDisplaysAndThenWindowsWithWhatIsToBeRecorded) {
    const auto entries = chooserEntries({{{{0, 0, 800, 600}, true}}, {editor}, 2});
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_FALSE(entries[0].filter.window);
    EXPECT_EQ(entries[0].filter.contentRect, (Rect{0, 0, 800, 600}));
    EXPECT_EQ(entries[0].filter.pointPixelScale, 2);
    EXPECT_EQ(entries[1].filter.window, 3U);
    EXPECT_EQ(entries[1].filter.contentRect, editor.frame);
}

TEST(ChooserEntries, DisplaysAreCalledByTheirNumbers) {
    using Texts = std::vector<std::pair<QString, QString>>;
    EXPECT_EQ(captions({{{{0, 0, 800, 600}, true}}, {}, 2}), (Texts{{"Whole screen", "1600 × 1200"}}));
    EXPECT_EQ(captions({{{{0, 0, 800, 600}, false}, {{800, 0, 1024, 768}, true}}, {}, 1}),
              (Texts{{"Display 0", "800 × 600"}, {"Main display", "1024 × 768"}}));
}

struct Captioned {
    const char* application;
    const char* title;
    const char* expectedTitle;
    const char* expectedDetail;
};

class WindowCaption : public ::testing::TestWithParam<Captioned> {};

TEST_P(WindowCaption, SaysWhatIsKnown) {
    ShareableWindow window = editor;
    window.applicationName = GetParam().application;
    window.title = GetParam().title;
    const auto entry = chooserEntries({{}, {window}, 1}).at(0);
    EXPECT_EQ(entry.title, GetParam().expectedTitle);
    EXPECT_EQ(entry.detail, GetParam().expectedDetail);
}

INSTANTIATE_TEST_SUITE_P(All, WindowCaption,
                         ::testing::Values(Captioned{"Editor", "notes.txt", "notes.txt", "Editor"},
                                           Captioned{"Editor", "", "Editor", "300 × 200"},
                                           Captioned{"", "notes.txt", "notes.txt", "300 × 200"},
                                           Captioned{"", " \n", "Untitled window", "300 × 200"},
                                           Captioned{"Editor", "two\nlines", "two lines", "Editor"}));

TEST(ChooserEntries, LeaveOutWhatIsNoApplicationsOwnWindow) {
    ShareableWindow panel = editor;
    panel.isNormal = false;
    ShareableWindow ours = editor;
    ours.isOurOwn = true;
    ShareableWindow helper = editor;
    helper.frame.width = 50;
    EXPECT_EQ(captions({{}, {panel, ours, helper}, 1}).size(), 0U);
}

}  // namespace
}  // namespace tessaloom
