// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <string>

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
    const auto document = parseJsonObject(
        R"({"a":1e400,"b":[true,false,null,2E0],"c":[-1E+999,3,0e999,1e-400,-0.01e-322,1e-99999999999999999999],"d":"1e400 \" 1e400","e":1e308})");
    ASSERT_TRUE(document);
    EXPECT_EQ(compactJson(*document),
              R"({"a":null,"b":[true,false,null,2],"c":[null,3,0,0,0,0],"d":"1e400 \" 1e400","e":1e+308})");
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

struct Reading {
    const char* what;
    std::string text;
    /// Nothing where the text is no document.
    std::optional<std::string> meaning;
};

TEST(Json, WhatIsADocumentAndWhatItMeans) {
    using namespace std::literals;
    const Reading readings[] = {
        {"nothing", "", {}},
        {"white space", " \n", {}},
        {"an array", "[{}]", {}},
        {"null", "null", {}},
        {"cut off", R"({"a":1)", {}},
        {"a byte order mark", "\uFEFF{\"a\":1}", R"({"a":1})"},
        {"a byte order mark and a huge number", "\uFEFF{\"a\":1e999}", R"({"a":null})"},
        {"two byte order marks", "\uFEFF\uFEFF{\"a\":1}", {}},
        {"part of a byte order mark", "\xEF\xBB{\"a\":1}", {}},
        {"the last byte of one", "\xBF{\"a\":1}", {}},
        {"a byte order mark behind", "{}\uFEFF", {}},
        {"a byte order mark alone", "\uFEFF", {}},
        {"UTF-16, little end first", "\xFF\xFE{\0}\0"s, {}},
        {"UTF-16, big end first", "\xFE\xFF\0{\0}"s, {}},
        {"UTF-16 without a mark", "{\0}\0"s, {}},
        {"white space around", " \t\r\n{} \t\r\n", "{}"},
        {"another script's white space", "\u00A0{}", {}},
        {"a zero byte behind", "{}\0"s, {}},
        {"a word behind", "{} x", {}},
        {"another brace behind", "{}}", {}},
        {"another document behind", "{}{}", {}},
        {"a comment", R"({/* so */"a":1})", {}},
        {"a comment behind", "{} // so", {}},
        {"a comma too many", R"({"a":1,})", {}},
        {"single quotes", "{'a':1}", {}},
        {"NaN", R"({"a":NaN})", {}},
        {"Infinity", R"({"a":Infinity})", {}},
        {"-Infinity", R"({"a":-Infinity})", {}},
        {"a plus sign", R"({"a":+1})", {}},
        {"a leading zero", R"({"a":01})", {}},
        {"a line break in a text", "{\"a\":\"\n\"}", {}},
        {"a surrogate pair", R"({"a":"\ud83D\uDE00"})", R"({"a":"😀"})"},
        {"a leading surrogate alone", R"({"a":"x\ud800y","b":2})", "{\"a\":\"x\uFFFDy\",\"b\":2}"},
        {"a trailing surrogate alone", R"({"a":"\udc00","b":2})", "{\"a\":\"\uFFFD\",\"b\":2}"},
        {"one before a pair", R"({"a":"\ud800\ud83d\ude00"})", "{\"a\":\"\uFFFD😀\"}"},
        {"one before another escape", R"({"a":"\udbff\n\u0041"})", R"({"a":"�\nA"})"},
        {"one at a text's end", R"({"a":"\udbff"})", "{\"a\":\"\uFFFD\"}"},
        {"one in a key", R"({"\udfff":1})", "{\"\uFFFD\":1}"},
        {"a pair the wrong way round", R"({"a":"\ude00\ud83d"})", "{\"a\":\"\uFFFD\uFFFD\"}"},
        {"no escape but a backslash", R"({"a":"\\ud800"})", R"({"a":"\\ud800"})"},
        {"half an escape", R"({"a":"\ud8"})", {}},
        {"a surrogate as bytes", "{\"a\":\"\xED\xA0\x80\"}", {}},
        {"an overlong zero", "{\"a\":\"\xC0\x80\"}", {}},
        {"a zero as an escape", R"({"a":"\u0000"})", R"({"a":"\u0000"})"},
        {"a key twice", R"({"a":1,"a":2})", R"({"a":1,"a":2})"},
    };
    for (const Reading& reading : readings) {
        const auto document = parseJsonObject(reading.text);
        EXPECT_EQ(document ? std::optional(compactJson(*document)) : std::nullopt, reading.meaning)
            << reading.what;
    }
}

TEST(Json, WhatHasNoValueIsLeftOutOrNull) {
    JsonDocument document;
    JsonWriter writer(document, document.GetAllocator());
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(writer.field("out", infinity));
    writer.fieldOrNull("wide", infinity);
    writer.fieldOrNull("narrow", std::nanf(""));
    writer.fieldOrNull("number", 1.5);
    EXPECT_EQ(compactJson(document), R"({"narrow":null,"number":1.5,"wide":null})");
}

}  // namespace
}  // namespace tessaloom
