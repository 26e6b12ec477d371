// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRect>
#include <cstdlib>
#include <thread>

#include "support/SceneCounter.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDesktop.h"
#include "support/XInjector.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

std::vector<QJsonObject> linesOf(const std::string& path) {
    QFile file(QString::fromStdString(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    std::vector<QJsonObject> lines;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (!line.isEmpty()) lines.push_back(QJsonDocument::fromJson(line).object());
    }
    return lines;
}

QRect rectFrom(const QJsonValue& value) {
    const QJsonArray rect = value.toArray();
    return {rect[0].toInt(), rect[1].toInt(), rect[2].toInt(), rect[3].toInt()};
}

// The scene on a desktop of its own, ready and still.
class SceneOnScreen : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(scene_.waitForOutput("ready\n", 10s)) << scene_.errors();
        paintsAtRest_ = waitUntilStill();
    }

    std::vector<QJsonObject> paints() const { return linesOf(paintLog_); }
    std::vector<QJsonObject> actions() const { return linesOf(actionLog_); }

    QRect rectOf(const char* control) const {
        QFile file(QString::fromStdString(geometry_));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return rectFrom(QJsonDocument::fromJson(file.readAll()).object().value(control));
    }

    int drive(std::vector<std::string> steps) {
        steps.insert(steps.begin(), {DEMO_DRIVER_PROGRAM, "--geometry", geometry_, "--log", actionLog_});
        ChildProcess driver(steps, desktop_.environment());
        const auto status = driver.waitForExit(30s);
        EXPECT_EQ(driver.errors(), "");
        return status.value_or(-1);
    }

    // The number of paints once none has come for a while.
    std::size_t waitUntilStill() const {
        std::size_t count = 0;
        for (int quiet = 0; quiet < 15; std::this_thread::sleep_for(20ms)) {
            const std::size_t now = paints().size();
            quiet = now == count ? quiet + 1 : 0;
            count = now;
        }
        return count;
    }

    std::optional<unsigned> counterOnScreen() const {
        const XInjector injector(desktop_.displayName());
        xcb_connection_t* connection = injector.connection();
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        const auto request = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, 0, 0, 1280, 720, ~0U);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
            xcb_get_image_reply(connection, request, nullptr), std::free);
        if (!reply) return std::nullopt;
        return readSceneCounter({xcb_get_image_data(reply.get()), 1280, 720, 1280 * 4}, rectOf("counter"));
    }

    VirtualDesktop desktop_;
    TemporaryFolder folder_;
    std::string paintLog_ = folder_.path() / "paints";
    std::string actionLog_ = folder_.path() / "actions";
    std::string geometry_ = folder_.path() / "geometry";
    ChildProcess scene_{
        {DEMO_SCENE_PROGRAM, "--full-screen", "--log", paintLog_, "--geometry-file", geometry_},
        desktop_.environment()};
    std::size_t paintsAtRest_ = 0;
};

TEST_F(SceneOnScreen, PaintsNothingWhileNothingHappens) {
    std::this_thread::sleep_for(400ms);
    EXPECT_EQ(paints().size(), paintsAtRest_);
}

TEST_F(SceneOnScreen, MovingOverEmptyGroundPaintsNothing) {
    ASSERT_EQ(drive({"--move", "222,640"}), 0);
    const std::size_t before = waitUntilStill();
    ASSERT_EQ(drive({"--move", "222,690", "--move", "222,600"}), 0);
    EXPECT_EQ(waitUntilStill(), before);
}

TEST_F(SceneOnScreen, TheCounterOnTheScreenIsThatOfTheLastPaint) {
    EXPECT_EQ(counterOnScreen(), static_cast<unsigned>(paints().back()["counter"].toInt()));
    ASSERT_EQ(drive({"--click", "row.3"}), 0);
    EXPECT_GT(waitUntilStill(), paintsAtRest_);
    EXPECT_EQ(counterOnScreen(), static_cast<unsigned>(paints().back()["counter"].toInt()));
}

TEST_F(SceneOnScreen, EachTypedCharacterPaintsOnceInItsField) {
    ASSERT_EQ(drive({"--click", "field.site"}), 0);
    const std::size_t before = waitUntilStill();
    ASSERT_EQ(drive({"--type", "Ab c"}), 0);
    waitUntilStill();
    const auto lines = paints();
    ASSERT_EQ(lines.size(), before + 4);
    // The first keystroke also turns the save state and the discard button.
    const QRect field = rectOf("field.site").adjusted(-4, -4, 4, 4);
    for (std::size_t line = before + 1; line < lines.size(); ++line) {
        EXPECT_TRUE(field.contains(rectFrom(lines[line]["rect"]))) << line;
    }
}

TEST_F(SceneOnScreen, APaintFollowsTheClickThatCausedItOnTheSameClock) {
    ASSERT_EQ(drive({"--move", "button.save", "--wait", "0.3", "--click", "button.save"}), 0);
    waitUntilStill();
    double pressed = 0;
    for (const QJsonObject& action : actions()) {
        if (action["kind"] == "press") pressed = action["host"].toDouble();
    }
    ASSERT_GT(pressed, 0);
    double painted = 0;
    for (const QJsonObject& paint : paints()) {
        const double host = paint["host"].toDouble();
        const bool shown = rectFrom(paint["rect"]).intersects(rectOf("button.save"));
        if (painted == 0 && shown && host >= pressed - 0.01) painted = host;
    }
    EXPECT_GT(painted, 0);
    EXPECT_LT(painted, pressed + 1);
}

TEST_F(SceneOnScreen, AnUnknownControlIsAnError) {
    ChildProcess driver({DEMO_DRIVER_PROGRAM, "--geometry", geometry_, "--click", "no.such"},
                        desktop_.environment());
    EXPECT_EQ(driver.waitForExit(10s), 1);
    EXPECT_NE(driver.errors().find("no.such"), std::string::npos);
}

}  // namespace
}  // namespace tessaloom::test
