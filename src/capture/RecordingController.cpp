// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingController.h"

#include <QCoroTimer>
#include <QDateTime>
#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <system_error>

#include "base/HostClock.h"
#include "base/Log.h"
#include "capture/CaptureError.h"
#include "capture/SourceResolver.h"
#include "motion/FirstEdit.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

constexpr auto originLimit = 8s;
constexpr double cursorSamplesPerSecond = 120.0;

TakeBundle createBundle(const std::filesystem::path& library) {
    std::error_code reportedBelow;
    std::filesystem::create_directories(library, reportedBelow);
    const QDateTime now = QDateTime::currentDateTime();
    const std::chrono::seconds localTime(now.toSecsSinceEpoch() + now.offsetFromUtc());
    return TakeBundle::create(library / TakeBundle::folderName(std::chrono::local_seconds(localTime)));
}

}  // namespace

void RecordingController::setState(State state) {
    state_ = state;
    Q_EMIT stateChanged(state);
}

QCoro::Task<RecordingController::StartOutcome> RecordingController::start(CaptureSource source,
                                                                          RecordingPreferences preferences,
                                                                          std::stop_token cancel) {
    if (state_ != State::idle) co_return Cancelled{};
    setState(State::starting);
    std::optional<std::string> failure;
    try {
        co_await startSources(std::move(source), std::move(preferences), cancel);
    } catch (const std::exception& error) {
        failure = error.what();
    }
    if (cancel.stop_requested()) {
        const auto unwanted = bundle_;
        co_await abortCapture();
        std::error_code ignored;
        if (unwanted) std::filesystem::remove_all(unwanted->url, ignored);
        co_return Cancelled{};
    }
    if (failure) {
        qCInfo(Log::recording, "Failed to start recording: %s", failure->c_str());
        co_await abortCapture();
        co_return Failed{*failure};
    }
    setState(State::recording);
    qCInfo(Log::recording, "Recording started → %s", bundle_->url.filename().c_str());
    co_return Started{bundle_->url};
}

/// The order matters: whatever is slow comes before the countdown, and the screen's first frame is the time
/// zero that everything else is measured against. Returns early when cancelled.
QCoro::Task<> RecordingController::startSources(CaptureSource source, RecordingPreferences preferences,
                                                std::stop_token cancel) {
    const CaptureTarget target = resolveSource(source, platform_.shareableContent());
    bundle_ = createBundle(preferences.libraryFolder);
    co_await countDown(preferences.countdownSeconds, cancel);
    if (cancel.stop_requested()) co_return;

    const std::uint64_t streamStartHostTime = HostClock::nanoseconds();
    screen_ = ScreenCaptureEngine::start(platform_, target, bundle_->file(TakeBundle::screenFile),
                                         [this](const std::string& reason) { announceEnd(reason); });
    {
        const std::stop_callback release(cancel, [this] { screen_->releaseWaiter(); });
        co_await screen_->waitForOrigin(originLimit);
    }
    if (cancel.stop_requested()) co_return;
    if (!screen_->started()) throw CaptureError::noFrames();
    startInput(streamStartHostTime);
}

/// Any thread: whoever listens hears it on the main one.
void RecordingController::announceEnd(const std::string& reason) {
    const auto text = QString::fromStdString(reason);
    QMetaObject::invokeMethod(
        this, [this, text] { Q_EMIT sourceEnded(text); }, Qt::QueuedConnection);
}

QCoro::Task<> RecordingController::countDown(int seconds, std::stop_token cancel) {
    if (seconds < 1) co_return;
    constexpr int slicesPerSecond = 10;
    for (int left = seconds; left > 0 && !cancel.stop_requested(); --left) {
        presenter_.showCountdown(left);
        for (int slice = 0; slice < slicesPerSecond && !cancel.stop_requested(); ++slice) {
            co_await QCoro::sleepFor(100ms);
        }
    }
    presenter_.hideCountdown();
    // The countdown needs a moment to be really off the screen.
    co_await QCoro::sleepFor(120ms);
}

void RecordingController::startInput(std::uint64_t streamStartHostTime) {
    EventLog log;
    log.streamStartHostTime = streamStartHostTime;
    log.captureRect = screen_->captureRect();
    const Rect frame{log.captureRect.x, log.captureRect.y, log.captureRect.width, log.captureRect.height};
    const double origin = screen_->timelineOrigin();
    auto cursor = std::make_unique<CursorSampler>(platform_.makePointerSource(), origin, frame);
    cursor->start(cursorSamplesPerSecond);
    auto eventTap = std::make_unique<InputEventTap>(platform_.makeInputEventSource());
    if (!eventTap->start()) {
        qCCritical(Log::recording, "Event tap unavailable; clicks and keys will not be recorded");
    }
    input_ = std::make_unique<InputRecorder>(*bundle_, std::move(log), origin, std::move(cursor),
                                             std::move(eventTap));
}

QCoro::Task<> RecordingController::stop() {
    if (state_ != State::recording || !bundle_ || !screen_) co_return;
    setState(State::finishing);
    co_await screen_->stop();
    const EventLog log = input_->stop();
    storeLog(log);
    lastBundle_ = bundle_->url;
    tearDown();
    setState(State::idle);
}

void RecordingController::storeLog(const EventLog& log) {
    // The journal goes last: while it is there, the next opening makes up for what is missing.
    bool complete = true;
    try {
        bundle_->write(log);
    } catch (const std::system_error& error) {
        qCCritical(Log::recording, "Failed to write events.json: %s", error.what());
        complete = false;
    }
    std::size_t keyframes = 0;
    try {
        keyframes = storeGeneratedZooms(*bundle_, log);
    } catch (const std::system_error& error) {
        qCCritical(Log::recording, "Failed to write edit.json: %s", error.what());
        complete = false;
    }
    if (complete) input_->discardJournal();
    qCInfo(Log::recording, "Recording stopped: %zu cursor samples, %zu events, %zu zoom keyframes",
           log.cursorSamples.size(), log.events.size(), keyframes);
}

QCoro::Task<> RecordingController::abortCapture() {
    if (screen_) co_await screen_->stop();
    if (input_) {
        input_->stop();
        input_->discardJournal();
    }
    tearDown();
    setState(State::idle);
}

void RecordingController::tearDown() {
    screen_.reset();
    input_.reset();
    bundle_.reset();
}

}  // namespace tessaloom
