// SPDX-License-Identifier: GPL-3.0-or-later
#include "FuzzCheck.h"
#include "core/EventJournal.h"
#include "core/EventLog.h"

// A journal in any state gives a log that can be stored, and a torn last line changes nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaloom;
    const std::string_view lines = fuzz::asText(data, size);
    const EventLog log = decodeJournal(lines);
    fuzz::require(decodeEventLog(encode(log)) == log);
    const auto wholeLines = lines.substr(0, lines.rfind('\n') + 1);
    fuzz::require(decodeJournal(wholeLines) == log);
    return 0;
}
