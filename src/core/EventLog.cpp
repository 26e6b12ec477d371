// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/EventLog.h"

#include "core/DecodeError.h"
#include "core/Json.h"
#include "core/LogFields.h"

namespace tessaloom {

template <typename Coder, RecordOf<EventLog> Record>
void fields(Coder& coder, Record& log) {
    headerFields(coder, log);
    coder.field("cursorSamples", log.cursorSamples);
    coder.field("events", log.events);
}

double logDuration(const EventLog& log) {
    if (!log.cursorSamples.empty()) return log.cursorSamples.back().pts;
    return log.events.empty() ? 0 : log.events.back().pts;
}

EventLog decodeEventLog(std::string_view json) {
    const auto document = parseJsonObject(json);
    if (!document) throw DecodeError("The event log is not a JSON object.");
    EventLog log;
    readJson(*document, log);
    return log;
}

std::string encode(const EventLog& log) {
    return encodePretty(log);
}

}  // namespace tessaloom
