// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/InputRecorder.h"

#include <algorithm>
#include <chrono>
#include <system_error>

#include "base/Log.h"
#include "capture/RelativeLocation.h"

namespace tessaloom {
namespace {

/// Half of what may be lost, so that a late writing still keeps the promise.
constexpr std::chrono::milliseconds journalInterval{500};

Rect areaOf(const CaptureRect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

EventLog withOffsets(EventLog log, const FileOffsets& offsets) {
    log.webcamStartOffset = offsets.webcam;
    log.micStartOffset = offsets.mic;
    return log;
}

std::optional<EventJournal> createJournal(const TakeBundle& bundle, const EventLog& header) {
    try {
        return EventJournal::create(bundle, header);
    } catch (const std::system_error& error) {
        qCCritical(Log::recording, "Failed to write the journal: %s", error.what());
        return std::nullopt;
    }
}

}  // namespace

InputRecorder::InputRecorder(const TakeBundle& bundle, EventLog log, double origin,
                             std::unique_ptr<CursorSampler> cursor, std::unique_ptr<InputEventTap> eventTap,
                             std::function<FileOffsets()> readOffsets)
    : log_(withOffsets(std::move(log), readOffsets())),
      retimer_(origin, areaOf(log_.captureRect), eventTap->clickLimits()),
      cursor_(std::move(cursor)),
      eventTap_(std::move(eventTap)),
      readOffsets_(std::move(readOffsets)),
      journal_(createJournal(bundle, log_)) {
    thread_ = std::jthread([this](const std::stop_token& stopToken) { run(stopToken); });
}

EventLog InputRecorder::stop() {
    cursor_->stop();
    eventTap_->stop();
    thread_.request_stop();
    if (thread_.joinable()) thread_.join();
    gather();
    const auto rest = retimer_.finish();
    writeJournal([&](EventJournal& journal) { journal.append({}, rest); });
    log_.events.insert(log_.events.end(), rest.begin(), rest.end());
    return std::move(log_);
}

void InputRecorder::discardJournal() {
    if (!journal_) return;
    try {
        journal_->remove();
    } catch (const std::system_error& error) {
        qCWarning(Log::recording, "Failed to remove the journal: %s", error.what());
    }
    journal_.reset();
}

/// Writing may take long on a busy disk; the next one is due all the same.
void InputRecorder::run(const std::stop_token& stop) {
    std::unique_lock guard(lock_);
    auto due = std::chrono::steady_clock::now();
    while (!stop.stop_requested()) {
        due = std::max(due + journalInterval, std::chrono::steady_clock::now());
        wakeUp_.wait_until(guard, stop, due, [] { return false; });
        gather();
    }
}

void InputRecorder::gather() {
    updateOffsets();
    // Events first: the samples taken after them then reach past them.
    auto newEvents = eventTap_->takeEvents();
    const auto path = cursor_->takeSamples();
    const auto events = retimer_.retime(std::move(newEvents), path);
    const auto samples = heldInside(path);
    writeJournal([&](EventJournal& journal) { journal.append(samples, events); });
    log_.cursorSamples.insert(log_.cursorSamples.end(), samples.begin(), samples.end());
    log_.events.insert(log_.events.end(), events.begin(), events.end());
}

void InputRecorder::updateOffsets() {
    const FileOffsets offsets = readOffsets_();
    if (offsets.webcam == log_.webcamStartOffset && offsets.mic == log_.micStartOffset) return;
    log_ = withOffsets(std::move(log_), offsets);
    writeJournal([this](EventJournal& journal) { journal.replaceHeader(log_); });
}

void InputRecorder::writeJournal(const std::function<void(EventJournal&)>& write) {
    if (!journal_ || journalFailed_) return;
    try {
        write(*journal_);
    } catch (const std::system_error& error) {
        // The journal itself is kept: its lock tells others that this recording is alive.
        qCCritical(Log::recording, "Failed to write the journal: %s", error.what());
        journalFailed_ = true;
    }
}

}  // namespace tessaloom
