// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRectF>
#include <algorithm>
#include <cmath>
#include <map>
#include <thread>

#include "desktop/DesktopRecording.h"
#include "media/MovieReader.h"
#include "support/SceneCounter.h"
#include "take/OpenTake.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr int width = 1280;
constexpr int height = 720;
constexpr double frame = 1.0 / 60;

std::vector<QJsonObject> linesOf(const std::filesystem::path& path) {
    QFile file(QString::fromStdString(path.string()));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    std::vector<QJsonObject> lines;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (!line.isEmpty()) lines.push_back(QJsonDocument::fromJson(line).object());
    }
    return lines;
}

/// The scene, recorded while somebody clicks through its list; all that each side noted about it.
class Demonstration : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        run_ = std::make_unique<Run>();
        run_->play();
    }
    static void TearDownTestSuite() { run_.reset(); }

    struct Press {
        double host;
        double x;
        double y;
    };

    struct Run {
        TemporaryFolder folder;
        VirtualDesktop desktop{width, height};
        std::optional<DesktopRecording> recording;
        TakeBundle bundle;
        std::map<unsigned, double> paints;  ///< host time by counter
        std::vector<Press> presses;
        /// First moment of the recording at which each paint is to be seen, by counter.
        std::map<unsigned, double> shown;

        void play() {
            const std::string geometry = (folder.path() / "geometry.json").string();
            ChildProcess scene({DEMO_SCENE_PROGRAM, "--full-screen", "--geometry-file", geometry, "--log",
                                (folder.path() / "scene.jsonl").string()},
                               desktop.environment());
            ASSERT_TRUE(scene.waitForOutput("ready\n", 10s)) << scene.errors();
            recording.emplace(desktop);
            std::vector<std::string> steps{DEMO_DRIVER_PROGRAM, "--geometry", geometry, "--log",
                                           (folder.path() / "driver.jsonl").string()};
            for (const char* row : {"row.1", "row.3", "row.0", "row.2"}) {
                steps.insert(steps.end(), {"--click", row, "--wait", "0.3"});
            }
            ChildProcess driver(steps, desktop.environment());
            ASSERT_EQ(driver.waitForExit(30s), 0) << driver.errors();
            bundle = recording->stop();
            readLogs();
            readMovie(geometry);
        }

        void readLogs() {
            for (const QJsonObject& paint : linesOf(folder.path() / "scene.jsonl")) {
                paints[static_cast<unsigned>(paint["counter"].toInt())] = paint["host"].toDouble();
            }
            for (const QJsonObject& action : linesOf(folder.path() / "driver.jsonl")) {
                if (action["kind"].toString() != "press") continue;
                presses.push_back(
                    {action["host"].toDouble(), action["x"].toDouble(), action["y"].toDouble()});
            }
        }

        void readMovie(const std::string& geometry) {
            QFile file(QString::fromStdString(geometry));
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            const auto strip = QJsonDocument::fromJson(file.readAll()).object()["counter"].toArray();
            const QRectF cells(strip[0].toDouble(), strip[1].toDouble(), strip[2].toDouble(),
                               strip[3].toDouble());
            const auto movie = MovieReader::open(bundle.file(TakeBundle::screenFile));
            BgraImage picture;
            while (const auto decoded = movie->next()) {
                decoded->toBgra(picture);
                const auto counter = readSceneCounter(picture.view(), cells);
                ASSERT_TRUE(counter) << "at " << decoded->time();
                shown.try_emplace(*counter, decoded->time());
            }
        }

        /// The host time of the recording's zero as the picture tells it. No frame shows a paint before it
        /// was made, and the quickest one shows it at once.
        double originByPicture() const {
            double origin = 0;
            for (const auto& [counter, time] : shown) {
                if (time > 0 && paints.contains(counter))
                    origin = std::max(origin, paints.at(counter) - time);
            }
            return origin;
        }
    };

    static inline std::unique_ptr<Run> run_;
};

TEST_F(Demonstration, EveryFrameShowsTheSceneOfItsMoment) {
    ASSERT_GT(run_->shown.size(), 8U);
    const double origin = run_->originByPicture();
    std::vector<double> delays;
    for (const auto& [counter, time] : run_->shown) {
        if (time == 0) continue;  // painted before the recording began
        ASSERT_TRUE(run_->paints.contains(counter)) << counter;
        delays.push_back(origin + time - run_->paints.at(counter));
    }
    // On a busy machine single readings come late; that is no fault of the clock.
    std::ranges::sort(delays);
    EXPECT_LE(delays[delays.size() / 2], 2 * frame);
}

TEST_F(Demonstration, ClicksAndPictureRunOnOneClock) {
    const EventLog log = run_->bundle.readLog();
    ASSERT_EQ(log.events.size(), run_->presses.size());
    const double origin = run_->originByPicture();
    for (std::size_t n = 0; n < log.events.size(); ++n) {
        EXPECT_NEAR(log.events[n].pts, run_->presses[n].host - origin, frame) << "press " << n;
    }
}

TEST_F(Demonstration, TheRippleStartsWithinOneFrameOfThePress) {
    const OpenTake take = OpenTake::open(run_->bundle);
    FrameComposer composer = take.composer({24, 24}, {4, 4});
    composer.zoom = ZoomTimeline();  // which may look elsewhere at that moment
    for (const InputEvent& press : take.log.events) {
        const double firstFrame = std::ceil(press.pts * 60 - 1e-9) / 60;
        const auto before = composer.composeFrame(firstFrame - frame, width, height);
        const auto at = composer.composeFrame(firstFrame, width, height);
        EXPECT_EQ(at.ripples.size(), before.ripples.size() + 1);
    }
}

TEST_F(Demonstration, ThePointersTipIsWhereThePointerWas) {
    const OpenTake take = OpenTake::open(run_->bundle);
    FrameComposer composer = take.composer({24, 24}, {4, 4});
    composer.cursorTrack = CursorTrack(take.log.cursorSamples);  // smoothing off
    composer.cursorBounce = false;
    composer.zoom = ZoomTimeline();  // which may look elsewhere at that moment
    ASSERT_EQ(take.log.events.size(), run_->presses.size());
    for (std::size_t n = 0; n < run_->presses.size(); ++n) {
        const auto composed = composer.composeFrame(take.log.events[n].pts, width, height);
        ASSERT_TRUE(composed.cursor);
        const Float4 rect = composed.cursor->rect;
        const Float4 content = composed.cursor->content;
        // The tip on the canvas, taken back into the recording.
        const double tipX = rect.x + rect.z * 4 / 24;
        const double tipY = rect.y + rect.w * 4 / 24;
        EXPECT_NEAR((tipX - content.x) / content.z * width, run_->presses[n].x, 2.0) << "press " << n;
        EXPECT_NEAR((tipY - content.y) / content.w * height, run_->presses[n].y, 2.0) << "press " << n;
    }
}

TEST_F(Demonstration, ZoomsAreWhereTheClicksWere) {
    const EditParams edit = run_->bundle.readEdit();
    ASSERT_FALSE(edit.zoomKeyframes.empty());
    const auto& first = edit.zoomKeyframes.front();
    EXPECT_LE(first.startPTS, run_->bundle.readLog().events.front().pts);
    const double x = run_->presses.front().x / width;
    EXPECT_GE(x, first.targetRect.x);
    EXPECT_LE(x, first.targetRect.x + first.targetRect.width);
}

}  // namespace
}  // namespace tessaloom::test
