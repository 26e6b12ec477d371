// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/SourceChooser.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickView>

#include "capture/ChooserLayout.h"
#include "capture/ChooserModel.h"
#include "capture/ScriptedPlatform.h"
#include "support/LogLines.h"

namespace tessaloom::test {
namespace {

/// A display and five windows, numbered from 1, to choose from.
class Chooser : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { QQuickWindow::setGraphicsApi(QSGRendererInterface::Software); }

    Chooser() {
        for (std::uint32_t id = 1; id <= 5; ++id)
            platform.windows.push_back({.id = id,
                                        .frame = {0, 0, 100.0 * id, 100},
                                        .applicationName = "Editor",
                                        .bundleIdentifier = "editor",
                                        .title = "A window"});
    }
    static QQuickView* view() {
        for (QWindow* window : QGuiApplication::allWindows()) {
            if (window->isVisible()) return qobject_cast<QQuickView*>(window);
        }
        return nullptr;
    }
    static void press(QWindow* window, int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &event);
    }
    std::optional<ContentFilter> pickedBy(const std::vector<int>& keys) {
        auto task = chooser.pick(cancel.get_token());
        QQuickView* const window = view();
        if (window == nullptr) ADD_FAILURE() << "nothing is shown";
        for (const int key : keys)
            press(window, key);
        return QCoro::waitFor(task).filter;
    }

    ScriptedPlatform platform;
    std::stop_source cancel;
    SourceChooser chooser{platform};
};

TEST_F(Chooser, EnterPicksTheFirstThing) {
    const auto filter = pickedBy({Qt::Key_Return});
    ASSERT_TRUE(filter);
    EXPECT_FALSE(filter->window);
    EXPECT_EQ(filter->contentRect, (Rect{0, 0, 64, 48}));
}

TEST_F(Chooser, ArrowsLeadToTheOthers) {
    EXPECT_EQ(pickedBy({Qt::Key_Right, Qt::Key_Right, Qt::Key_Left, Qt::Key_Enter})->window, 1U);
    const int columns = chooserLayout(QGuiApplication::primaryScreen()->size(), 6).columns;
    EXPECT_EQ(pickedBy({Qt::Key_Down, Qt::Key_Enter})->window, static_cast<std::uint32_t>(columns));
}

TEST_F(Chooser, EscapeCancels) {
    EXPECT_FALSE(pickedBy({Qt::Key_Escape}));
    EXPECT_EQ(view(), nullptr);
    EXPECT_FALSE(platform.thumbnails.handler) << "they are no longer made";
}

TEST_F(Chooser, OnlyTheFirstEventCounts) {
    EXPECT_EQ(
        pickedBy({Qt::Key_Right, Qt::Key_Return, Qt::Key_Right, Qt::Key_Return, Qt::Key_Escape})->window, 1U);
    EXPECT_FALSE(pickedBy({Qt::Key_Escape, Qt::Key_Return}));
}

TEST_F(Chooser, ItsCallerMayGiveUp) {
    auto task = chooser.pick(cancel.get_token());
    EXPECT_NE(view(), nullptr);
    cancel.request_stop();
    EXPECT_FALSE(QCoro::waitFor(task).filter);
    EXPECT_EQ(view(), nullptr);
}

TEST_F(Chooser, ClosingItCancels) {
    auto task = chooser.pick(cancel.get_token());
    view()->close();
    EXPECT_FALSE(QCoro::waitFor(task).filter);
}

TEST_F(Chooser, ShowsThePicturesThatArrive) {
    auto task = chooser.pick(cancel.get_token());
    QQuickView* const window = view();
    ASSERT_EQ(platform.thumbnails.filters.size(), 6U);
    EXPECT_EQ(platform.thumbnails.filters[5].window, 5U);
    QImage picture(platform.thumbnails.largest, QImage::Format_RGB32);
    picture.fill(0xFF20A040);
    platform.thumbnails.handler(5, picture);
    const auto isShown = [&] {
        QCoreApplication::processEvents();
        QImage sheet = window->grabWindow();
        int count = 0;
        for (int y = 0; y < sheet.height(); ++y) {
            for (int x = 0; x < sheet.width(); ++x)
                count += sheet.pixel(x, y) == 0xFF20A040 ? 1 : 0;
        }
        return count > picture.width() * picture.height() * 9 / 10;
    };
    EXPECT_TRUE(isShown());
    press(window, Qt::Key_Escape);
    QCoro::waitFor(task);
}

TEST_F(Chooser, AWindowThatWasClosedCannotBePicked) {
    auto task = chooser.pick(cancel.get_token());
    QQuickView* const window = view();
    const auto* model = window->rootObject()->property("model").value<ChooserModel*>();
    ASSERT_NE(model, nullptr);
    const auto goneRole = model->roleNames().key("isGone");
    const auto detailRole = model->roleNames().key("detail");
    platform.thumbnails.handler(1, {});
    QCoreApplication::processEvents();
    EXPECT_TRUE(model->index(1).data(goneRole).toBool());
    EXPECT_FALSE(model->index(2).data(goneRole).toBool());
    EXPECT_EQ(model->index(1).data(detailRole).toString(), "This window was closed");
    press(window, Qt::Key_Right);
    press(window, Qt::Key_Return);
    EXPECT_NE(view(), nullptr) << "the choice goes on";
    press(window, Qt::Key_Right);
    press(window, Qt::Key_Return);
    EXPECT_EQ(QCoro::waitFor(task).filter->window, 2U);
}

TEST_F(Chooser, ThatCannotBeShownIsLoggedAndPicksNothing) {
    platform.thumbnails.refuses = true;
    const LogLines lines;
    EXPECT_FALSE(QCoro::waitFor(chooser.pick(cancel.get_token())).filter);
    EXPECT_TRUE(lines.contains("Source picker failed: The script refuses."));
    EXPECT_EQ(view(), nullptr);
}

}  // namespace
}  // namespace tessaloom::test
