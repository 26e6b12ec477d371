// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/InterruptedTake.h"

#include <exception>

#include "core/EventJournal.h"
#include "motion/FirstEdit.h"

namespace tessaloom {
namespace {

// The stop writes the log before it does anything else that could be lost; what a recording starts with is
// the empty log.
bool wasStopped(const TakeBundle& bundle) {
    try {
        return bundle.readLog() != EventLog{};
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace

void finishInterruptedTake(const TakeBundle& bundle) {
    const auto recovered = recoverJournal(bundle);
    if (!recovered) return;
    bundle.removeEmptyMedia();
    if (!wasStopped(bundle)) bundle.write(*recovered);
    storeFirstEdit(bundle, bundle.readLog());
    std::filesystem::remove(bundle.file(TakeBundle::journalFile));
}

}  // namespace tessaloom
