// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <array>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "support/VirtualDesktop.h"

namespace {

/// Windows of this process shall lie on a private desktop, which Qt must find when it starts.
void showWindowsOn(const tessaloom::test::VirtualDesktop& desktop) {
    for (const auto& [name, value] : desktop.environment())
        qputenv(name.c_str(), value.c_str());
    for (const auto& [name, value] :
         std::array{std::pair{"QT_QPA_PLATFORM", "xcb"}, std::pair{"QT_QUICK_BACKEND", "software"},
                    std::pair{"QT_XCB_GL_INTEGRATION", "none"}})
        qputenv(name, value);
}

/// The desktop's text resolution, if this test is to have one. Qt reads it when it starts.
void setDotsPerInch(const tessaloom::test::VirtualDesktop& desktop) {
    const auto dotsPerInch = qgetenv("TESSALOOM_TEST_DPI").toStdString();
    if (dotsPerInch.empty()) return;
    tessaloom::test::ChildProcess xrdb({"sh", "-c", "echo 'Xft.dpi: " + dotsPerInch + "' | xrdb -merge"},
                                       desktop.environment());
    if (xrdb.waitForExit(std::chrono::seconds(10)) != 0) throw std::runtime_error(xrdb.errors());
}

}  // namespace

int main(int argumentCount, char** arguments) {
    ::testing::InitGoogleTest(&argumentCount, arguments);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    const tessaloom::test::VirtualDesktop desktop(640, 480);
    setDotsPerInch(desktop);
    showWindowsOn(desktop);
    const QGuiApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}
