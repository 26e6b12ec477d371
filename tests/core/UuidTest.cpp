// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Uuid.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(Uuid, RandomOnesDifferAndSayThatTheyAreRandom) {
    const std::string text = Uuid::random().text();
    EXPECT_NE(text, Uuid::random().text());
    ASSERT_EQ(text.size(), 36U);
    EXPECT_EQ(text[14], '4') << "version";
    EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos) << "variant";
}

TEST(Uuid, ReadsEitherCaseAndWritesCapitals) {
    const auto uuid = Uuid::fromText("0f8fad5b-D9CB-469f-a165-70867728950e");
    ASSERT_TRUE(uuid);
    EXPECT_EQ(uuid->text(), "0F8FAD5B-D9CB-469F-A165-70867728950E");
}

TEST(Uuid, OtherTextIsRefused) {
    for (const char* text :
         {"", "0f8fad5b", "0f8fad5bd9cb469fa16570867728950e0000", "0f8fad5b-d9cb-469f-a165-70867728950g",
          "0f8fad5b-d9cb-469f-a165-70867728950e ", "{f8fad5b-d9cb-469f-a165-70867728950}"})
        EXPECT_FALSE(Uuid::fromText(text)) << text;
}

}  // namespace
}  // namespace tessaloom
