// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RegionSelection.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <algorithm>

#include "capture/ScriptedPlatform.h"

namespace tessaloom {
namespace {

TEST(SelectedArea, IsWiderAndTallerThanEightPointsInAnyDirection) {
    EXPECT_EQ(selectedArea({10, 20}, {110, 70}), (Rect{10, 20, 100, 50}));
    EXPECT_EQ(selectedArea({110, 70}, {10, 20}), (Rect{10, 20, 100, 50}));
    EXPECT_EQ(selectedArea({0, 0}, {8.5, 9}), (Rect{0, 0, 8.5, 9}));
    EXPECT_FALSE(selectedArea({0, 0}, {8, 100}));
    EXPECT_FALSE(selectedArea({0, 0}, {100, 8}));
    EXPECT_FALSE(selectedArea({50, 50}, {50, 50}));
}

std::ptrdiff_t shownWindows() {
    const auto windows = QGuiApplication::allWindows();
    return std::ranges::count_if(windows, [](const QWindow* window) { return window->isVisible(); });
}

TEST(RegionSelection, ASecondOneReplacesTheFirst) {
    test::ScriptedPlatform platform;
    RegionSelection selection(platform);
    std::stop_source cancel;
    bool firstEnded = false;
    auto first = selection.selectRegion(cancel.get_token()).then([&](const std::optional<Rect>& area) {
        EXPECT_FALSE(area);
        firstEnded = true;
    });
    EXPECT_EQ(shownWindows(), QGuiApplication::screens().size());
    auto second = selection.selectRegion(cancel.get_token());
    QCoro::waitFor(first);
    EXPECT_TRUE(firstEnded);
    EXPECT_EQ(shownWindows(), QGuiApplication::screens().size());
    cancel.request_stop();
    EXPECT_FALSE(QCoro::waitFor(second));
    EXPECT_EQ(shownWindows(), 0);
}

}  // namespace
}  // namespace tessaloom
