// SPDX-License-Identifier: GPL-3.0-or-later
#include "FuzzCheck.h"
#include "core/DecodeError.h"
#include "core/EventLog.h"

// Whatever is read is written so that it reads back the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaloom;
    try {
        const EventLog log = decodeEventLog(fuzz::asText(data, size));
        fuzz::require(decodeEventLog(encode(log)) == log);
    } catch (const DecodeError&) {
    }
    return 0;
}
