// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/EventJournal.h"

#include <fcntl.h>

#include <string>
#include <system_error>
#include <utility>

#include "core/Json.h"
#include "core/LogFields.h"

namespace tessaloom {
namespace {

std::string headerLine(const EventLog& log) {
    JsonDocument document;
    JsonWriter writer(document, document.GetAllocator());
    headerFields(writer, log);
    return compactJson(document) + '\n';
}

template <typename Record>
void appendReadable(const JsonValue& value, std::vector<Record>& records) {
    Record record;
    if (readJson(value, record)) records.push_back(std::move(record));
}

void appendLine(std::string_view line, EventLog& log) {
    const auto document = parseJsonObject(line);
    if (!document) return;
    if (document->HasMember("captureRect")) {
        JsonReader reader(*document);
        headerFields(reader, log);
    } else if (document->HasMember("type")) {
        appendReadable(*document, log.events);
    } else {
        appendReadable(*document, log.cursorSamples);
    }
}

template <typename Record>
void addLines(std::span<const Record> records, std::string& lines) {
    for (const Record& record : records)
        lines += encodeCompact(record) + '\n';
}

}  // namespace

EventJournal::EventJournal(std::filesystem::path path, FileDescriptor file)
    : path_(std::move(path)), file_(std::move(file)) {}

EventJournal EventJournal::create(const TakeBundle& bundle, const EventLog& header) {
    const auto path = bundle.file(TakeBundle::journalFile);
    auto file = FileDescriptor::open(path, O_WRONLY | O_CREAT | O_APPEND);
    if (!file.tryLock()) {
        throw std::system_error(std::make_error_code(std::errc::device_or_resource_busy),
                                "Another recording is being written to \"" + bundle.url.string() + "\"");
    }
    file.truncate();
    file.writeAll(headerLine(header));
    return EventJournal(path, std::move(file));
}

void EventJournal::append(std::span<const CursorSample> samples, std::span<const InputEvent> events) {
    if (samples.empty() && events.empty()) return;
    // Each batch starts on a fresh line, so that one torn by a full disk costs none of the next.
    std::string lines = "\n";
    addLines(samples, lines);
    addLines(events, lines);
    write(lines);
}

void EventJournal::replaceHeader(const EventLog& header) {
    write('\n' + headerLine(header));
}

void EventJournal::write(std::string_view lines) {
    file_.writeAll(lines);
    file_.syncData();
}

void EventJournal::remove() {
    std::filesystem::remove(path_);
}

EventLog decodeJournal(std::string_view lines) {
    EventLog log;
    for (auto end = lines.find('\n'); end != std::string_view::npos; end = lines.find('\n')) {
        appendLine(lines.substr(0, end), log);
        lines.remove_prefix(end + 1);
    }
    return log;
}

std::optional<EventLog> recoverJournal(const TakeBundle& bundle) {
    const auto path = bundle.file(TakeBundle::journalFile);
    if (!std::filesystem::exists(path)) return std::nullopt;
    auto file = FileDescriptor::open(path, O_RDONLY);
    if (!file.tryLock()) return std::nullopt;
    return decodeJournal(file.readAll());
}

}  // namespace tessaloom
