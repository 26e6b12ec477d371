// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QGuiApplication>

// Tests draw text through Qt but own no window: the offscreen platform needs neither display nor bus.
int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&argumentCount, arguments);
    const QGuiApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}
