// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/SourceResolver.h"

#include <gtest/gtest.h>

#include "capture/CaptureError.h"

namespace tessaloom {
namespace {

/// Two monitors side by side, the right one main; three windows, the editor in front.
ShareableContent desktop() {
    ShareableContent content;
    content.displays = {{{0, 0, 1000, 800}, false}, {{1000, 0, 600, 800}, true}};
    content.windows = {{.id = 1,
                        .frame = {10, 10, 300, 200},
                        .applicationName = "Editor",
                        .bundleIdentifier = "org.Editor",
                        .title = "notes.txt"},
                       {.id = 2,
                        .frame = {10, 10, 500, 400},
                        .applicationName = "Editor",
                        .bundleIdentifier = "org.Editor",
                        .title = "Plan"},
                       {.id = 3,
                        .frame = {0, 0, 900, 700},
                        .applicationName = "Safari",
                        .bundleIdentifier = "safari",
                        .title = "News"}};
    content.pointPixelScale = 1.5;
    return content;
}

std::string failure(const CaptureSource& source, const ShareableContent& content) {
    try {
        resolveSource(source, content);
    } catch (const CaptureError& error) {
        return error.advice().empty() ? error.what() : std::string(error.what()) + " | " + error.advice();
    }
    return "no failure";
}

TEST(SourceResolver, TheMainDisplayNeedsNoBoundsOfItsOwn) {
    const auto target = resolveSource(MainDisplaySource{}, desktop());
    EXPECT_EQ(target.filter.contentRect, (Rect{1000, 0, 600, 800}));
    EXPECT_EQ(target.filter.pointPixelScale, 1.5);
    EXPECT_FALSE(target.displayBounds);
    EXPECT_FALSE(target.filter.window);
}

TEST(SourceResolver, WithoutAMainDisplayTheFirstServes) {
    auto content = desktop();
    content.displays[1].isMain = false;
    EXPECT_EQ(resolveSource(MainDisplaySource{}, content).filter.contentRect, (Rect{0, 0, 1000, 800}));
}

TEST(SourceResolver, DisplaysAreCountedFromZero) {
    const auto target = resolveSource(DisplaySource{0}, desktop());
    EXPECT_EQ(target.displayBounds, (Rect{0, 0, 1000, 800}));
    EXPECT_EQ(failure(DisplaySource{2}, desktop()),
              "No display available to capture. | The displays are numbered 0 to 1.");
    EXPECT_EQ(failure(DisplaySource{-1}, desktop()), failure(DisplaySource{2}, desktop()));
    EXPECT_EQ(failure(MainDisplaySource{}, {}),
              "No display available to capture. | The desktop has none at present.");
}

TEST(SourceResolver, AnAreaAcrossTwoDisplaysGoesToTheOneWithMoreOfIt) {
    const auto target = resolveSource(RegionSource{{900, 100, 300, 200}}, desktop());
    EXPECT_EQ(target.region, (Rect{1000, 100, 200, 200}));
    EXPECT_EQ(target.filter.contentRect, (Rect{1000, 0, 600, 800}));
}

TEST(SourceResolver, AnAreaHalfOnEachDisplayGoesToTheEarlier) {
    EXPECT_EQ(resolveSource(RegionSource{{900, 100, 200, 200}}, desktop()).region,
              (Rect{900, 100, 100, 200}));
}

TEST(SourceResolver, AnAreaPastTheEdgeIsCutToItsDisplay) {
    EXPECT_EQ(resolveSource(RegionSource{{-50, 700, 200, 200}}, desktop()).region, (Rect{0, 700, 150, 100}));
}

TEST(SourceResolver, AnAreaOffEveryDisplayFails) {
    EXPECT_EQ(failure(RegionSource{{5000, 0, 100, 100}}, desktop()),
              "No display available to capture. | The area lies off every display.");
    EXPECT_EQ(failure(RegionSource{{1600, 0, 100, 100}}, desktop()),
              failure(RegionSource{{5000, 0, 100, 100}}, desktop()));
}

TEST(SourceResolver, ApplicationNamesAreContainedWithoutCase) {
    EXPECT_EQ(resolveSource(AppWindowSource{"SAF", {}}, desktop()).filter.window, 3U);
    auto content = desktop();
    content.windows[2].applicationName = "ÜBERSICHT";
    EXPECT_EQ(resolveSource(AppWindowSource{"übers", {}}, content).filter.window, 3U);
}

TEST(SourceResolver, IdentifiersMustBeEqualWithoutCase) {
    EXPECT_EQ(resolveSource(AppWindowSource{"ORG.editor", {}}, desktop()).filter.window, 2U);
    EXPECT_EQ(failure(AppWindowSource{"org.edit", {}}, desktop()),
              "No visible window matches org.edit. Check the app is open and the window is not minimised.");
}

TEST(SourceResolver, TheMenusIdentifierServesToo) {
    auto content = desktop();
    content.windows[2].desktopID = "org.example.Browser";
    EXPECT_EQ(resolveSource(AppWindowSource{"Org.Example.browser", {}}, content).filter.window, 3U);
    EXPECT_NE(failure(AppWindowSource{"org.example", {}}, content), "no failure") << "it must be equal";
}

TEST(SourceResolver, TheLargestOfSeveralWindowsIsTaken) {
    const auto target = resolveSource(AppWindowSource{"editor", {}}, desktop());
    EXPECT_EQ(target.filter.window, 2U);
    EXPECT_EQ(target.filter.contentRect, (Rect{10, 10, 500, 400}));
    EXPECT_FALSE(target.displayBounds);
    EXPECT_FALSE(target.region);
}

TEST(SourceResolver, OfEquallyLargeWindowsTheEarlierOneIsTaken) {
    auto content = desktop();
    content.windows[0].frame = content.windows[1].frame;
    EXPECT_EQ(resolveSource(AppWindowSource{"editor", {}}, content).filter.window, 1U);
}

TEST(SourceResolver, ATitleNarrowsTheChoice) {
    EXPECT_EQ(resolveSource(AppWindowSource{"editor", "NOTES"}, desktop()).filter.window, 1U);
    EXPECT_EQ(failure(AppWindowSource{"Editor", "Budget"}, desktop()),
              "No visible window matches Editor \"Budget\". Check the app is open and the window is not "
              "minimised.");
}

TEST(SourceResolver, PanelsSmallWindowsAndOurOwnNeverMatch) {
    auto content = desktop();
    content.windows[2].isNormal = false;
    EXPECT_NE(failure(AppWindowSource{"safari", {}}, content), "no failure");
    content = desktop();
    content.windows[2].frame.width = 50;
    EXPECT_NE(failure(AppWindowSource{"safari", {}}, content), "no failure");
    content = desktop();
    content.windows[2].isOurOwn = true;
    EXPECT_NE(failure(AppWindowSource{"safari", {}}, content), "no failure");
}

}  // namespace
}  // namespace tessaloom
