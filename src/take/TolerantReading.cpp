// SPDX-License-Identifier: GPL-3.0-or-later
#include "take/TolerantReading.h"

#include <exception>
#include <string_view>

#include "motion/InterruptedTake.h"

namespace tessaloom {
namespace {

struct Unreadable {
    std::string_view file;
    std::string reason;
};

/// The stored value, or the fresh one.
template <typename Read>
auto readOrFresh(std::string_view file, std::vector<Unreadable>& failures, Read read) -> decltype(read()) {
    try {
        return read();
    } catch (const std::exception& error) {
        failures.push_back({file, error.what()});
        return {};
    }
}

EditParams readEdit(const TakeBundle& bundle, std::vector<Unreadable>& failures) {
    return readOrFresh(TakeBundle::editFile, failures, [&bundle] { return bundle.readEdit(); });
}

EventLog readLog(const TakeBundle& bundle, std::vector<Unreadable>& failures) {
    return readOrFresh(TakeBundle::eventsFile, failures, [&bundle] { return bundle.readLog(); });
}

/// One sentence however many files it is about.
void warnOf(const std::vector<Unreadable>& failures, Warnings& warnings) {
    if (failures.empty()) return;
    std::string names;
    std::string reasons;
    for (const auto& [file, reason] : failures) {
        names += (names.empty() ? "\"" : " and \"") + std::string(file) + '"';
        reasons += ' ' + reason + (reason.ends_with('.') ? "" : ".");
    }
    warnings.push_back("The recording's " + names + " can't be read and " +
                       (failures.size() == 1 ? "counts" : "count") + " as empty:" + reasons);
}

}  // namespace

void finishIfInterrupted(const TakeBundle& bundle, Warnings& warnings) {
    try {
        finishInterruptedTake(bundle);
    } catch (const std::exception& error) {
        warnings.push_back(std::string("The recording broke off and can't be completed: ") + error.what());
    }
}

StoredRecords readRecords(const TakeBundle& bundle, Warnings& warnings) {
    std::vector<Unreadable> failures;
    StoredRecords records{.edit = readEdit(bundle, failures), .log = readLog(bundle, failures)};
    warnOf(failures, warnings);
    return records;
}

EditParams readEditOrFresh(const TakeBundle& bundle, Warnings& warnings) {
    std::vector<Unreadable> failures;
    EditParams edit = readEdit(bundle, failures);
    warnOf(failures, warnings);
    return edit;
}

EventLog readLogOrEmpty(const TakeBundle& bundle, Warnings& warnings) {
    std::vector<Unreadable> failures;
    EventLog log = readLog(bundle, failures);
    warnOf(failures, warnings);
    return log;
}

}  // namespace tessaloom
