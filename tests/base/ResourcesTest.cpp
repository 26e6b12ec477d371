// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Resources.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(Resources, WhatComesWithTheProgramIsFound) {
    const auto click = resource("click.wav");
    ASSERT_TRUE(click);
    EXPECT_GT(std::filesystem::file_size(*click), 0U);
}

TEST(Resources, WhatDoesNotIsMissing) {
    EXPECT_FALSE(resource("no such sound.wav"));
    EXPECT_FALSE(resource(""));
}

}  // namespace
}  // namespace tessaloom
