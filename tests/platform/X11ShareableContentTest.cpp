// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11ShareableContent.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QByteArray>
#include <QCoreApplication>
#include <algorithm>
#include <optional>

#include "support/TestWindow.h"
#include "support/VirtualDesktop.h"
#include "support/XInjector.h"

namespace tessaloom {
namespace {

using test::TestWindow;

class X11Content : public ::testing::Test {
  protected:
    X11Content() { qputenv("DISPLAY", desktop.displayName().c_str()); }

    std::unique_ptr<TestWindow> windowOf(const std::string& application, std::int64_t process) const {
        auto window = std::make_unique<TestWindow>(connection,
                                                   test::WindowDescription{.rect = {10, 10, 100, 80},
                                                                           .kind = test::WindowKind::Managed,
                                                                           .applicationName = application});
        test::setNumber(connection, window->id(), "_NET_WM_PID", XCB_ATOM_CARDINAL,
                        static_cast<std::uint32_t>(process));
        return window;
    }
    static ShareableWindow described(const TestWindow& window) {
        const auto server = X11Connection::open();
        const auto content = readShareableContent(*server);
        const auto found = std::ranges::find(content.windows, window.id(), &ShareableWindow::id);
        if (found == content.windows.end()) throw std::runtime_error("the window isn't there");
        return *found;
    }

    test::VirtualDesktop desktop{320, 240};
    test::XInjector injector{desktop.displayName()};
    xcb_connection_t* connection = injector.connection();
};

TEST_F(X11Content, KnowsOurWindowsByTheirClassWhicheverProcessTheyAreOf) {
    const auto name = QCoreApplication::applicationName().toStdString();
    EXPECT_TRUE(described(*windowOf(name, getpid())).isOurOwn);
    EXPECT_TRUE(described(*windowOf(name, getpid() + 1)).isOurOwn);
    EXPECT_FALSE(described(*windowOf("Greenhouse", getpid() + 1)).isOurOwn);
    EXPECT_FALSE(described(*windowOf("Greenhouse", getpid())).isOurOwn)
        << "the number is another container's";
}

}  // namespace
}  // namespace tessaloom
