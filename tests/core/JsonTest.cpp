// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace tessaloom {
namespace {

std::string numberText(double number) {
    JsonValue value;
    value.SetDouble(number);
    return compactJson(value);
}

double roundTrip(double number) {
    const auto document = parseJsonObject("{\"n\":" + numberText(number) + "}");
    double result = std::nan("");
    if (document) JsonReader(*document).field("n", result);
    return result;
}

TEST(Json, NumbersAreTheShortestTextThatReadsBackTheSame) {
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(40), "40");
    EXPECT_EQ(numberText(-2.5e-7), "-2.5e-07");
    EXPECT_EQ(numberText(5e-324), "5e-324");
}

TEST(Json, AnyNumberReadsBackTheSame) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 20'000; ++round) {
        const std::uint64_t bits = random();
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        if (!std::isfinite(number)) continue;
        ASSERT_EQ(roundTrip(number), number) << numberText(number);
    }
    for (const double number : {std::numeric_limits<double>::max(), std::numeric_limits<double>::min(),
                                std::numeric_limits<double>::denorm_min(), 0.1 + 0.2})
        EXPECT_EQ(roundTrip(number), number);
}

TEST(Json, A32BitNumberReadsBackTheSameInEitherWidth) {
    for (const float number : {0.1F, 1.0F / 3.0F, 16777217.0F, std::numeric_limits<float>::denorm_min()}) {
        JsonDocument document;
        ASSERT_TRUE(writeJson(number, document, document.GetAllocator()));
        const std::string text = compactJson(document);
        EXPECT_EQ(std::stod(text), double{number});
        EXPECT_EQ(std::strtof(text.c_str(), nullptr), number);
    }
}

TEST(Json, KeysAreSortedByTheirBytes) {
    const auto document = parseJsonObject(R"({"b":1,"é":2,"a":{"z":null,"B":[true,{}]},"A":"x"})");
    ASSERT_TRUE(document);
    EXPECT_EQ(compactJson(*document), R"({"A":"x","a":{"B":[true,{}],"z":null},"b":1,"é":2})");
}

TEST(Json, TextKeepsEveryByte) {
    const std::string text("nul \0 quote \" slash \\ line \n é 世", 35);
    JsonDocument document;
    writeJson(text, document, document.GetAllocator());
    const auto object = parseJsonObject("{\"t\":" + compactJson(document) + "}");
    ASSERT_TRUE(object);
    std::string result;
    EXPECT_TRUE(JsonReader(*object).field("t", result));
    EXPECT_EQ(result, text);
}

TEST(Json, ANumberBeyondADoubleCostsOnlyItself) {
    const auto document =
        parseJsonObject(R"({"a":1e400,"b":2,"c":[-1E+999,3,0e999,1e-400],"d":"1e400 \" 1e400","e":1e308})");
    ASSERT_TRUE(document);
    EXPECT_EQ(compactJson(*document),
              R"({"a":null,"b":2,"c":[null,3,0,null],"d":"1e400 \" 1e400","e":1e+308})");
}

TEST(Json, SoDoesAnIntegerOfHundredsOfDigits) {
    const auto document = parseJsonObject("{\"a\":" + std::string(400, '7') + ",\"b\":-0,\"c\":1}");
    ASSERT_TRUE(document);
    EXPECT_TRUE((*document)["a"].IsNull());
    EXPECT_EQ((*document)["c"].GetInt(), 1);
}

TEST(Json, TextThatIsNotUtf8OrHoldsAZeroByteIsNone) {
    EXPECT_FALSE(parseJsonObject("{\"a\":\"\xFF\"}"));
    EXPECT_FALSE(parseJsonObject(std::string_view("{\"a\":7}\0x", 9)));
    EXPECT_TRUE(parseJsonObject("{\"a\":\"\xC3\xA9\"}"));
}

TEST(Json, OfAKeyThatStandsTwiceTheLastCounts) {
    const auto document = parseJsonObject(R"({"n":1,"m":5,"n":3})");
    ASSERT_TRUE(document);
    double number = 0;
    EXPECT_TRUE(JsonReader(*document).field("n", number));
    EXPECT_EQ(number, 3);
}

}  // namespace
}  // namespace tessaloom
