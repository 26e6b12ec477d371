// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ClickSounds.h"

#include <gtest/gtest.h>

#include "support/SoundMaker.h"

namespace tessaloom {
namespace {

TEST(ClickSounds, EachSoundsWholeAtItsTimeAndOverlapsAddUp) {
    const std::vector<StereoSample> click{{1, -1}, {2, -2}, {3, -3}};
    ClickSounds clicks(click, {7, 0, 8, 775, 778});
    EXPECT_EQ(clicks.end(), 781);
    const auto sound = test::pull(clicks, 800);
    std::vector<float> expected(800);
    for (const std::size_t start : {0U, 7U, 8U, 775U, 778U})
        for (std::size_t i = 0; i < 3; ++i)
            expected[start + i] += static_cast<float>(i + 1);
    for (std::size_t i = 0; i < sound.size(); ++i)
        ASSERT_EQ(sound[i], (StereoSample{expected[i], -expected[i]})) << i;
}

}  // namespace
}  // namespace tessaloom
