// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "capture/CursorSampler.h"
#include "capture/EventRetimer.h"
#include "capture/InputEventTap.h"
#include "core/EventJournal.h"
#include "core/EventLog.h"

namespace tessaloom {

/// Gathers the log of a running recording from the cursor sampler and the event tap, and keeps the journal
/// beside it on disk at most a second behind, so that a recorder that dies loses next to nothing.
class InputRecorder {
  public:
    /// `log` brings the values that the lists of samples and events are added to; `origin` in HostClock
    /// seconds. A journal that can't be written is logged, and the recording goes on without.
    InputRecorder(const TakeBundle& bundle, EventLog log, double origin,
                  std::unique_ptr<CursorSampler> cursor, std::unique_ptr<InputEventTap> eventTap);

    /// Ends sampler, tap and journal; the journal's file stays until discardJournal(). Call once.
    EventLog stop();

    /// Removes the journal, once the finished log is stored.
    void discardJournal();

  private:
    void run(const std::stop_token& stop);
    void gather();
    void writeJournal(std::span<const CursorSample> samples, std::span<const InputEvent> events);

    EventLog log_;
    EventRetimer retimer_;
    std::unique_ptr<CursorSampler> cursor_;
    std::unique_ptr<InputEventTap> eventTap_;
    std::optional<EventJournal> journal_;
    bool journalFailed_ = false;
    std::mutex lock_;
    std::condition_variable_any wakeUp_;
    std::jthread thread_;
};

}  // namespace tessaloom
