// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/Arguments.h"

#include <gtest/gtest.h>

#include "shell/UsageErrorOf.h"

namespace tessaloom {
namespace {

Arguments parsed(const QStringList& words) {
    return Arguments(words, {{"json", {}, {}}, {"size", "N", {}}, {"output", "FILE", "o"}}, {"RECORDING"});
}

std::string errorOf(const QStringList& words) {
    return test::usageErrorOf([&] { return parsed(words); });
}

TEST(ArgumentsTest, OptionsAndWordsMayComeInAnyOrder) {
    for (const QStringList& words :
         {QStringList{"take", "--json", "--size", "3"}, QStringList{"--json", "--size=3", "take"},
          QStringList{"--size", "3", "take", "--json"}}) {
        const Arguments arguments = parsed(words);
        EXPECT_EQ(arguments.words(), QStringList{"take"});
        EXPECT_TRUE(arguments.has("json"));
        EXPECT_EQ(arguments.integer("size"), 3);
    }
}

TEST(ArgumentsTest, WhatIsNotGivenHasNoValue) {
    const Arguments arguments = parsed({"take"});
    EXPECT_FALSE(arguments.has("json"));
    EXPECT_EQ(arguments.text("output"), std::nullopt);
    EXPECT_EQ(arguments.number("size"), std::nullopt);
    EXPECT_EQ(arguments.integer("size"), std::nullopt);
}

TEST(ArgumentsTest, AnAliasStandsForItsOption) {
    EXPECT_EQ(parsed({"take", "-o", "a b.mp4"}).text("output"), "a b.mp4");
    EXPECT_EQ(parsed({"take", "--output", "c.mp4"}).text("output"), "c.mp4");
}

TEST(ArgumentsTest, TheLastOfSeveralValuesCounts) {
    EXPECT_EQ(parsed({"take", "--size", "3", "--size", "4"}).integer("size"), 4);
}

TEST(ArgumentsTest, WordsAfterTwoDashesAreNoOptions) {
    EXPECT_EQ(parsed({"--", "--json"}).words(), QStringList{"--json"});
}

TEST(ArgumentsTest, NegativeNumbersAreValues) {
    EXPECT_EQ(parsed({"take", "--size", "-3"}).integer("size"), -3);
    EXPECT_EQ(parsed({"take", "--size=-0.5"}).number("size"), -0.5);
}

TEST(ArgumentsTest, WhatIsWrongIsNamed) {
    EXPECT_EQ(errorOf({"take", "--sise", "3"}), "Unknown option 'sise'.");
    EXPECT_EQ(errorOf({"take", "--size"}), "Missing value after '--size'.");
    EXPECT_EQ(errorOf({"--json"}), "RECORDING is missing.");
    EXPECT_EQ(errorOf({"take", "two", "three"}), "Don't know what to do with \"two\".");
}

TEST(ArgumentsTest, ValuesThatAreNoNumbersAreNamed) {
    for (const char* value : {"x", "", "nan", "inf", "1e999", "3s"}) {
        const QString text = value;
        const Arguments arguments = parsed({"take", "--size=" + text});
        EXPECT_EQ(test::usageErrorOf([&] { return arguments.number("size"); }),
                  "--size takes a number, not \"" + text.toStdString() + "\".");
    }
    for (const char* value : {"x", "1.5", "99999999999"}) {
        const Arguments arguments = parsed({"take", "--size", value});
        EXPECT_EQ(test::usageErrorOf([&] { return arguments.integer("size"); }),
                  std::string("--size takes a whole number, not \"") + value + "\".");
    }
}

}  // namespace
}  // namespace tessaloom
