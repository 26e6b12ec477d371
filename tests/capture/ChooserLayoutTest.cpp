// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ChooserLayout.h"

#include <gtest/gtest.h>

#include <Qt>

namespace tessaloom {
namespace {

TEST(ChooserLayout, FitsEveryScreenWithAnyNumberOfCards) {
    for (const QSize screen : {QSize(640, 480), QSize(1280, 720), QSize(1920, 1080), QSize(1080, 1920)}) {
        for (int count = 1; count <= 60; ++count) {
            const ChooserLayout layout = chooserLayout(screen, count);
            ASSERT_LE(layout.sheet.width(), screen.width()) << count;
            ASSERT_LE(layout.sheet.height(), screen.height()) << count;
            ASSERT_LE(layout.columns * layout.card.width(), layout.sheet.width()) << count;
            ASSERT_LT(layout.picture.width(), layout.card.width());
            ASSERT_LT(layout.picture.height(), layout.card.height());
        }
    }
}

TEST(ChooserLayout, FewCardsAreLargerThanMany) {
    const auto cardWidth = [](int count) { return chooserLayout({1920, 1080}, count).card.width(); };
    EXPECT_GT(cardWidth(4), cardWidth(20));
    EXPECT_GT(cardWidth(20), cardWidth(60));
    EXPECT_EQ(cardWidth(60), cardWidth(300)) << "the smallest, which are scrolled";
}

TEST(ChooserLayout, RowsAreOfAboutTheSameLength) {
    EXPECT_EQ(chooserLayout({1920, 1080}, 6).columns, 3);
    EXPECT_EQ(chooserLayout({1920, 1080}, 5).columns, 3);
}

struct Step {
    int key;
    int from;
    int to;
};

class CardAfterKey : public ::testing::TestWithParam<Step> {};

/// Eight cards in rows of three: 0 1 2 / 3 4 5 / 6 7.
TEST_P(CardAfterKey, IsTheNextInItsDirection) {
    EXPECT_EQ(cardAfterKey(GetParam().key, GetParam().from, 3, 8), GetParam().to);
}

INSTANTIATE_TEST_SUITE_P(All, CardAfterKey,
                         ::testing::Values(Step{Qt::Key_Right, 0, 1}, Step{Qt::Key_Right, 2, 3},
                                           Step{Qt::Key_Right, 7, 7}, Step{Qt::Key_Left, 3, 2},
                                           Step{Qt::Key_Left, 0, 0}, Step{Qt::Key_Down, 1, 4},
                                           Step{Qt::Key_Down, 5, 7}, Step{Qt::Key_Down, 6, 6},
                                           Step{Qt::Key_Up, 7, 4}, Step{Qt::Key_Up, 1, 1},
                                           Step{Qt::Key_A, 4, 4}));

}  // namespace
}  // namespace tessaloom
