// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "capture/CursorSampler.h"
#include "capture/EventRetimer.h"
#include "capture/InputEventTap.h"
#include "core/EventJournal.h"
#include "core/EventLog.h"

namespace tessaloom {

/// Where the files beside the screen's begin, in seconds after its first frame; 0 for one that hasn't begun.
struct FileOffsets {
    double webcam = 0;
    double mic = 0;
};

/// Gathers the log of a running recording from the cursor sampler and the event tap, and keeps the journal
/// beside it on disk at most a second behind, so that a recorder that dies loses next to nothing.
class InputRecorder {
  public:
    /// `log` brings the values that the lists of samples and events are added to; `origin` in HostClock
    /// seconds. `readOffsets` is asked from another thread, until stop() has returned. A journal that can't
    /// be written is logged, and the recording goes on without.
    InputRecorder(const TakeBundle& bundle, EventLog log, double origin,
                  std::unique_ptr<CursorSampler> cursor, std::unique_ptr<InputEventTap> eventTap,
                  std::function<FileOffsets()> readOffsets);

    /// Ends sampler, tap and journal; the journal's file stays until discardJournal(). Call once.
    EventLog stop();

    /// Removes the journal, once the finished log is stored.
    void discardJournal();

  private:
    void run(const std::stop_token& stop);
    void gather();
    void updateOffsets();
    void writeJournal(const std::function<void(EventJournal&)>& write);

    EventLog log_;
    EventRetimer retimer_;
    std::unique_ptr<CursorSampler> cursor_;
    std::unique_ptr<InputEventTap> eventTap_;
    std::function<FileOffsets()> readOffsets_;
    std::optional<EventJournal> journal_;
    bool journalFailed_ = false;
    std::mutex lock_;
    std::condition_variable_any wakeUp_;
    std::jthread thread_;
};

}  // namespace tessaloom
