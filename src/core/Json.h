// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <rapidjson/document.h>

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/RawString.h"
#include "core/Uuid.h"

/// Stored records as JSON. A record lists its keys once, for both directions, in an overload
///
///     template <typename Coder, RecordOf<TrimRange> Record>
///     void fields(Coder& coder, Record& trim) { coder.field("start", trim.start); … }
///
/// Reading is tolerant: a key that is missing or holds an unreadable value leaves the field as it was, which
/// is its default. Writing leaves out what has no value and numbers that are not finite.
namespace tessaloom {

using JsonDocument = rapidjson::Document;
using JsonValue = rapidjson::Value;
using JsonAllocator = JsonDocument::AllocatorType;

template <typename T, typename Record>
concept RecordOf = std::same_as<std::remove_const_t<T>, Record>;

template <typename T>
concept Enumeration = std::is_enum_v<T>;

/// Nothing when the text is no JSON in UTF-8, whole and with nothing after it. One leading byte order mark is
/// ignored. A number beyond the range of a double is null, and half a surrogate pair is U+FFFD. Nesting costs
/// no stack.
std::optional<JsonDocument> parseJson(std::string_view text);

/// Nothing when the text is no JSON object.
std::optional<JsonDocument> parseJsonObject(std::string_view text);

/// Keys sorted by their bytes, numbers as the shortest text that reads back the same.
std::string prettyJson(const JsonValue& value);
std::string compactJson(const JsonValue& value);

/// Each answers whether `value` was readable, and leaves `result` alone if not.
bool readJson(const JsonValue& value, bool& result);
bool readJson(const JsonValue& value, double& result);
/// Any number that is integral and in range.
bool readJson(const JsonValue& value, int& result);
bool readJson(const JsonValue& value, std::uint64_t& result);
bool readJson(const JsonValue& value, std::string& result);
bool readJson(const JsonValue& value, Uuid& result);
/// One bad number makes the whole list unreadable.
bool readJson(const JsonValue& value, std::vector<double>& result);
template <Enumeration T>
bool readJson(const JsonValue& value, T& result);
template <typename T>
bool readJson(const JsonValue& value, std::optional<T>& result);
/// Drops the unreadable elements and keeps the order of the others.
template <typename Record>
bool readJson(const JsonValue& value, std::vector<Record>& result);
template <typename Record>
bool readJson(const JsonValue& value, Record& result);

/// Each answers whether there is anything to write.
bool writeJson(bool value, JsonValue& result, JsonAllocator& allocator);
bool writeJson(double value, JsonValue& result, JsonAllocator& allocator);
/// As the 64-bit number of the same value, so that it reads back the same in either width.
bool writeJson(float value, JsonValue& result, JsonAllocator& allocator);
bool writeJson(int value, JsonValue& result, JsonAllocator& allocator);
bool writeJson(std::uint64_t value, JsonValue& result, JsonAllocator& allocator);
bool writeJson(std::string_view value, JsonValue& result, JsonAllocator& allocator);
bool writeJson(const std::string& value, JsonValue& result, JsonAllocator& allocator);
bool writeJson(const Uuid& value, JsonValue& result, JsonAllocator& allocator);
template <Enumeration T>
bool writeJson(const T& value, JsonValue& result, JsonAllocator& allocator);
template <typename T>
bool writeJson(const std::optional<T>& value, JsonValue& result, JsonAllocator& allocator);
template <typename T>
bool writeJson(const std::vector<T>& value, JsonValue& result, JsonAllocator& allocator);
template <typename Record>
bool writeJson(const Record& record, JsonValue& result, JsonAllocator& allocator);

/// Hands the values of one JSON object to a record's fields.
class JsonReader {
  public:
    explicit JsonReader(const JsonValue& object) : object_(object) {}

    template <typename T>
    bool field(const char* key, T& value) {
        const JsonValue* stored = find(key);
        return stored != nullptr && readJson(*stored, value);
    }

    /// A record is unreadable without this one.
    template <typename T>
    void required(const char* key, T& value) {
        complete_ = field(key, value) && complete_;
    }

    bool complete() const { return complete_; }

  private:
    /// Of a key that stands more than once the last one counts, as with most readers.
    const JsonValue* find(std::string_view key) const {
        for (auto member = object_.MemberEnd(); member != object_.MemberBegin();) {
            --member;
            if (key == std::string_view(member->name.GetString(), member->name.GetStringLength())) {
                return &member->value;
            }
        }
        return nullptr;
    }

    const JsonValue& object_;
    bool complete_ = true;
};

/// Collects a record's fields into one JSON object.
class JsonWriter {
  public:
    JsonWriter(JsonValue& object, JsonAllocator& allocator) : object_(object), allocator_(allocator) {
        object_.SetObject();
    }

    template <typename T>
    bool field(const char* key, const T& value) {
        JsonValue member;
        if (!writeJson(value, member, allocator_)) return false;
        object_.AddMember(rapidjson::StringRef(key), member, allocator_);
        return true;
    }

    /// As `field`, but what has no value, such as a number that is not finite, is null and keeps its key.
    template <typename T>
    void fieldOrNull(const char* key, const T& value) {
        JsonValue member;
        if (!writeJson(value, member, allocator_)) member.SetNull();
        object_.AddMember(rapidjson::StringRef(key), member, allocator_);
    }

    /// A record without this one is not written.
    template <typename T>
    void required(const char* key, const T& value) {
        complete_ = field(key, value) && complete_;
    }

    bool complete() const { return complete_; }

  private:
    JsonValue& object_;
    JsonAllocator& allocator_;
    bool complete_ = true;
};

template <typename Record>
std::string encodePretty(const Record& record) {
    JsonDocument document;
    writeJson(record, document, document.GetAllocator());
    return prettyJson(document);
}

template <typename Record>
std::string encodeCompact(const Record& record) {
    JsonDocument document;
    writeJson(record, document, document.GetAllocator());
    return compactJson(document);
}

template <Enumeration T>
bool readJson(const JsonValue& value, T& result) {
    if (!value.IsString()) return false;
    const auto known = fromRawString<T>({value.GetString(), value.GetStringLength()});
    result = known.value_or(result);
    return known.has_value();
}

template <typename T>
bool readJson(const JsonValue& value, std::optional<T>& result) {
    T inner{};
    if (!readJson(value, inner)) return false;
    result = std::move(inner);
    return true;
}

template <typename Record>
bool readJson(const JsonValue& value, std::vector<Record>& result) {
    if (!value.IsArray()) return false;
    result.clear();
    for (const JsonValue& element : value.GetArray()) {
        Record record{};
        if (readJson(element, record)) result.push_back(std::move(record));
    }
    return true;
}

template <typename Record>
bool readJson(const JsonValue& value, Record& result) {
    if (!value.IsObject()) return false;
    JsonReader reader(value);
    Record record{};
    fields(reader, record);
    if (reader.complete()) result = std::move(record);
    return reader.complete();
}

template <Enumeration T>
bool writeJson(const T& value, JsonValue& result, JsonAllocator& allocator) {
    return writeJson(rawString(value), result, allocator);
}

template <typename T>
bool writeJson(const std::optional<T>& value, JsonValue& result, JsonAllocator& allocator) {
    return value && writeJson(*value, result, allocator);
}

template <typename T>
bool writeJson(const std::vector<T>& value, JsonValue& result, JsonAllocator& allocator) {
    result.SetArray();
    for (const T& element : value) {
        JsonValue written;
        if (writeJson(element, written, allocator)) result.PushBack(written, allocator);
    }
    return true;
}

template <typename Record>
bool writeJson(const Record& record, JsonValue& result, JsonAllocator& allocator) {
    JsonWriter writer(result, allocator);
    fields(writer, record);
    return writer.complete();
}

}  // namespace tessaloom
