// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Json.h"

#include <rapidjson/error/error.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "core/JsonMending.h"

namespace tessaloom {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string_view text(const JsonValue& value) {
    return {value.GetString(), value.GetStringLength()};
}

// Builds a document from a text that is being parsed. Numbers come as they are spelled: the library's own
// conversion to full precision stumbles over some of them (such as 0e308).
class DocumentBuilder {
  public:
    explicit DocumentBuilder(JsonDocument& document) : document_(document) {}

    bool Null() { return document_.Null(); }
    bool Bool(bool value) { return document_.Bool(value); }
    bool Int(int value) { return document_.Int(value); }
    bool Uint(unsigned value) { return document_.Uint(value); }
    bool Int64(std::int64_t value) { return document_.Int64(value); }
    bool Uint64(std::uint64_t value) { return document_.Uint64(value); }
    bool Double(double value) { return document_.Double(value); }
    bool String(const char* text, unsigned length, bool copy) { return document_.String(text, length, copy); }
    bool Key(const char* text, unsigned length, bool copy) { return document_.Key(text, length, copy); }
    bool StartObject() { return document_.StartObject(); }
    bool EndObject(unsigned count) { return document_.EndObject(count); }
    bool StartArray() { return document_.StartArray(); }
    bool EndArray(unsigned count) { return document_.EndArray(count); }

    /// A number beyond the range of a double is an unreadable value.
    bool RawNumber(const char* text, unsigned length, bool) {
        if (const auto value = converted<std::uint64_t>(text, length)) return document_.Uint64(*value);
        if (const auto value = converted<std::int64_t>(text, length)) return document_.Int64(*value);
        if (const auto value = converted<double>(text, length)) return document_.Double(*value);
        return document_.Null();
    }

  private:
    template <typename Number>
    static std::optional<Number> converted(const char* text, unsigned length) {
        Number number{};
        const auto [end, error] = std::from_chars(text, text + length, number);
        if (error != std::errc{} || end != text + length) return std::nullopt;
        return number;
    }

    JsonDocument& document_;
};

bool isIntegral(const JsonValue& value) {
    return value.IsDouble() && std::trunc(value.GetDouble()) == value.GetDouble();
}

// The library's own number writer promises to read back the same, not to be the shortest.
template <typename Writer>
void writeNumber(const JsonValue& value, Writer& writer) {
    if (value.IsUint64()) {
        writer.Uint64(value.GetUint64());
    } else if (value.IsInt64()) {
        writer.Int64(value.GetInt64());
    } else {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value.GetDouble()).ptr;
        writer.RawValue(digits.data(), static_cast<std::size_t>(end - digits.data()), rapidjson::kNumberType);
    }
}

template <typename Writer>
void writeSorted(const JsonValue& value, Writer& writer);

template <typename Writer>
void writeObject(const JsonValue& object, Writer& writer) {
    std::vector<const JsonValue::Member*> members;
    members.reserve(object.MemberCount());
    for (const auto& member : object.GetObject())
        members.push_back(&member);
    std::ranges::sort(members, {}, [](const auto* member) { return text(member->name); });
    writer.StartObject();
    for (const auto* member : members) {
        writer.Key(member->name.GetString(), member->name.GetStringLength());
        writeSorted(member->value, writer);
    }
    writer.EndObject();
}

template <typename Writer>
void writeSorted(const JsonValue& value, Writer& writer) {
    if (value.IsObject()) {
        writeObject(value, writer);
    } else if (value.IsArray()) {
        writer.StartArray();
        for (const JsonValue& element : value.GetArray())
            writeSorted(element, writer);
        writer.EndArray();
    } else if (value.IsNumber()) {
        writeNumber(value, writer);
    } else {
        value.Accept(writer);
    }
}

rapidjson::ParseErrorCode parseInto(JsonDocument& document, std::string_view text) {
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag |
                               rapidjson::kParseValidateEncodingFlag;
    rapidjson::MemoryStream stream(text.data(), text.size());
    auto error = rapidjson::kParseErrorNone;
    const auto parse = [&](JsonDocument& target) {
        DocumentBuilder builder(target);
        error = rapidjson::Reader().Parse<flags>(stream, builder).Code();
        return error == rapidjson::kParseErrorNone;
    };
    document.Populate(parse);
    return error;
}

}  // namespace

std::optional<JsonDocument> parseJson(std::string_view text) {
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    // The parser would take a zero byte for the end.
    if (text.find('\0') != std::string_view::npos) return std::nullopt;
    const auto whole = withLoneSurrogatesReplaced(text);
    if (whole) text = *whole;
    JsonDocument document;
    auto error = parseInto(document, text);
    if (error == rapidjson::kParseErrorNumberTooBig) error = parseInto(document, withHugeNumbersAsNull(text));
    if (error != rapidjson::kParseErrorNone) return std::nullopt;
    return document;
}

std::optional<JsonDocument> parseJsonObject(std::string_view text) {
    auto document = parseJson(text);
    if (document && !document->IsObject()) return std::nullopt;
    return document;
}

std::string prettyJson(const JsonValue& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
    writer.SetIndent(' ', 2);
    writeSorted(value, writer);
    return {buffer.GetString(), buffer.GetSize()};
}

std::string compactJson(const JsonValue& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writeSorted(value, writer);
    return {buffer.GetString(), buffer.GetSize()};
}

bool readJson(const JsonValue& value, bool& result) {
    if (!value.IsBool()) return false;
    result = value.GetBool();
    return true;
}

bool readJson(const JsonValue& value, double& result) {
    if (!value.IsNumber()) return false;
    result = value.GetDouble();
    return true;
}

bool readJson(const JsonValue& value, int& result) {
    using Limits = std::numeric_limits<int>;
    if (value.IsInt()) {
        result = value.GetInt();
        return true;
    }
    if (!isIntegral(value) || value.GetDouble() < Limits::min() || value.GetDouble() > Limits::max())
        return false;
    result = static_cast<int>(value.GetDouble());
    return true;
}

bool readJson(const JsonValue& value, std::uint64_t& result) {
    constexpr double beyond = 18446744073709551616.0;
    if (value.IsUint64()) {
        result = value.GetUint64();
        return true;
    }
    if (!isIntegral(value) || value.GetDouble() < 0 || value.GetDouble() >= beyond) return false;
    result = static_cast<std::uint64_t>(value.GetDouble());
    return true;
}

bool readJson(const JsonValue& value, std::string& result) {
    if (!value.IsString()) return false;
    result = text(value);
    return true;
}

bool readJson(const JsonValue& value, Uuid& result) {
    if (!value.IsString()) return false;
    const auto known = Uuid::fromText(text(value));
    result = known.value_or(result);
    return known.has_value();
}

bool readJson(const JsonValue& value, std::vector<double>& result) {
    if (!value.IsArray()) return false;
    const auto array = value.GetArray();
    if (!std::ranges::all_of(array, [](const JsonValue& element) { return element.IsNumber(); }))
        return false;
    result.clear();
    for (const JsonValue& element : array)
        result.push_back(element.GetDouble());
    return true;
}

bool writeJson(bool value, JsonValue& result, JsonAllocator&) {
    result.SetBool(value);
    return true;
}

bool writeJson(double value, JsonValue& result, JsonAllocator&) {
    if (!std::isfinite(value)) return false;
    result.SetDouble(value);
    return true;
}

bool writeJson(float value, JsonValue& result, JsonAllocator& allocator) {
    return writeJson(static_cast<double>(value), result, allocator);
}

bool writeJson(int value, JsonValue& result, JsonAllocator&) {
    result.SetInt(value);
    return true;
}

bool writeJson(std::uint64_t value, JsonValue& result, JsonAllocator&) {
    result.SetUint64(value);
    return true;
}

bool writeJson(std::string_view value, JsonValue& result, JsonAllocator& allocator) {
    result.SetString(value.data(), static_cast<rapidjson::SizeType>(value.size()), allocator);
    return true;
}

bool writeJson(const std::string& value, JsonValue& result, JsonAllocator& allocator) {
    return writeJson(std::string_view(value), result, allocator);
}

bool writeJson(const Uuid& value, JsonValue& result, JsonAllocator& allocator) {
    return writeJson(value.text(), result, allocator);
}

}  // namespace tessaloom
