// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CountdownController.h"

#include <gtest/gtest.h>

#include <QTimer>

#include "capture/NotingPresenter.h"
#include "capture/ScriptedPlatform.h"

namespace tessaloom {
namespace {

class Countdown : public ::testing::Test {
  protected:
    void run(int seconds) {
        CountdownController countdown(platform, presenter, WaitClock::host());
        QCoro::waitFor(countdown.run(seconds, cancel.get_token()));
    }

    test::ScriptedPlatform platform;
    test::NotingPresenter presenter;
    std::stop_source cancel;
};

TEST_F(Countdown, ShowsEachSecondAndLeavesTheScreen) {
    run(2);
    EXPECT_EQ(presenter.countdown, (std::vector<int>{2, 1, 0}));
}

TEST_F(Countdown, OfZeroShowsNothing) {
    run(0);
    run(-3);
    EXPECT_TRUE(presenter.countdown.empty());
}

TEST_F(Countdown, IsSkippedByTheSpaceBar) {
    platform.pressedKey = "SPCE";
    run(600);
    EXPECT_EQ(presenter.countdown, std::vector<int>{0});
}

TEST_F(Countdown, IsNotSkippedByAnotherKey) {
    platform.pressedKey = "ESC";
    run(1);
    EXPECT_EQ(presenter.countdown, (std::vector<int>{1, 0}));
}

TEST_F(Countdown, TakesItsFullTimeWhereNoKeyIsReported) {
    platform.refusesInput = true;
    run(1);
    EXPECT_EQ(presenter.countdown, (std::vector<int>{1, 0}));
}

TEST_F(Countdown, EndsWhenItIsGivenUp) {
    QTimer::singleShot(20, [this] { cancel.request_stop(); });
    run(600);
    EXPECT_EQ(presenter.countdown, (std::vector<int>{600, 0}));
}

}  // namespace
}  // namespace tessaloom
