// SPDX-License-Identifier: GPL-3.0-or-later
#include "take/TolerantReading.h"

#include <exception>

#include "motion/InterruptedTake.h"

namespace tessaloom {
namespace {

/// The stored value, or the fresh one and a warning.
template <typename Value, typename Read>
Value readOrFresh(const char* what, Warnings& warnings, Read read) {
    try {
        return read();
    } catch (const std::exception& error) {
        warnings.push_back(std::string("The recording's ") + what +
                           " can't be read and counts as empty: " + error.what());
        return {};
    }
}

}  // namespace

void finishIfInterrupted(const TakeBundle& bundle, Warnings& warnings) {
    try {
        finishInterruptedTake(bundle);
    } catch (const std::exception& error) {
        warnings.push_back(std::string("The recording broke off and can't be completed: ") + error.what());
    }
}

EditParams readEditOrFresh(const TakeBundle& bundle, Warnings& warnings) {
    return readOrFresh<EditParams>("edit", warnings, [&bundle] { return bundle.readEdit(); });
}

EventLog readLogOrEmpty(const TakeBundle& bundle, Warnings& warnings) {
    return readOrFresh<EventLog>("event log", warnings, [&bundle] { return bundle.readLog(); });
}

}  // namespace tessaloom
