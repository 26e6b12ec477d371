// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <functional>
#include <optional>
#include <thread>

#include "capture/RegionSelection.h"
#include "platform/x11/X11CapturePlatform.h"
#include "support/ChildProcess.h"
#include "support/XInjector.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

bool waitUntil(const std::function<bool()>& condition) {
    QElapsedTimer passed;
    for (passed.start(); passed.elapsed() < 10000 && !condition(); std::this_thread::sleep_for(2ms))
        QCoreApplication::processEvents();
    return condition();
}

bool isShown() {
    return std::ranges::any_of(QGuiApplication::allWindows(), &QWindow::isExposed);
}

/// However Qt scales its windows: see the test below.
TEST(RegionOnScreen, IsWhatWasDraggedInPixels) {
    X11CapturePlatform platform;
    RegionSelection selection(platform);
    std::stop_source cancel;
    std::optional<Rect> area;
    bool isOver = false;
    auto task = selection.selectRegion(cancel.get_token()).then([&](const std::optional<Rect>& selected) {
        area = selected;
        isOver = true;
    });
    ASSERT_TRUE(waitUntil(isShown));
    test::XInjector injector{qgetenv("DISPLAY").toStdString()};
    injector.moveTo({100, 60});
    injector.press(1);
    injector.moveTo({200, 200});
    injector.moveTo({340, 260});
    injector.release(1);
    ASSERT_TRUE(waitUntil([&] { return isOver; }));
    ASSERT_TRUE(area);
    const double scale = platform.shareableContent().pointPixelScale;
    EXPECT_NEAR(area->x * scale, 100, 1);
    EXPECT_NEAR(area->y * scale, 60, 1);
    EXPECT_NEAR(area->width * scale, 240, 1);
    EXPECT_NEAR(area->height * scale, 200, 1);
}

struct Scaling {
    const char* name;
    test::Environment environment;
};

std::ostream& operator<<(std::ostream& stream, const Scaling& scaling) {
    return stream << scaling.name;
}

class RegionOnScaledScreen : public ::testing::TestWithParam<Scaling> {};

/// Qt scales a whole process.
TEST_P(RegionOnScaledScreen, IsWhatWasDraggedInPixels) {
    test::Environment environment = test::currentEnvironment();
    for (const auto& [name, value] : GetParam().environment)
        environment[name] = value;
    test::ChildProcess scaled({"/proc/self/exe", "--gtest_filter=RegionOnScreen.IsWhatWasDraggedInPixels"},
                              environment);
    EXPECT_EQ(scaled.waitForExit(30s), 0) << scaled.output();
}

INSTANTIATE_TEST_SUITE_P(
    Scalings, RegionOnScaledScreen,
    ::testing::Values(
        Scaling{"dotsPerInch", {{"TESSALOOM_TEST_DPI", "144"}}},
        Scaling{"factor", {{"QT_SCALE_FACTOR", "1.5"}}},
        Scaling{"factorAndDotsPerInch", {{"QT_SCALE_FACTOR", "1.5"}, {"TESSALOOM_TEST_DPI", "192"}}},
        Scaling{"off", {{"QT_ENABLE_HIGHDPI_SCALING", "0"}, {"TESSALOOM_TEST_DPI", "144"}}},
        Scaling{"rounded", {{"QT_SCALE_FACTOR_ROUNDING_POLICY", "Round"}, {"TESSALOOM_TEST_DPI", "120"}}}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace tessaloom
