// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <array>
#include <optional>
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

}  // namespace

int main(int argumentCount, char** arguments) {
    ::testing::InitGoogleTest(&argumentCount, arguments);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
    const tessaloom::test::VirtualDesktop desktop(640, 480);
    showWindowsOn(desktop);
    const QGuiApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}
