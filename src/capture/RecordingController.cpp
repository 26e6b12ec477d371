// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingController.h"

#include <QCoroFuture>
#include <QDateTime>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <functional>
#include <system_error>

#include "base/HostClock.h"
#include "base/Log.h"
#include "capture/CaptureError.h"
#include "capture/DeviceOpening.h"
#include "capture/InputStart.h"
#include "capture/SourceResolver.h"
#include "motion/FirstEdit.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

constexpr auto originLimit = 8s;
constexpr auto cameraStartLimit = 4s;
constexpr auto agentLimit = 600s;
constexpr int leastAgentCountdown = 3;

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

void RecordingController::toggle(RecordingPreferences preferences) {
    if (state_ == State::idle) {
        start(MainDisplaySource{}, std::move(preferences), {});
    } else if (state_ == State::recording) {
        stop();
    }
}

void RecordingController::startPicked(RecordingPreferences preferences) {
    if (state_ == State::idle) start(PickerSource{}, std::move(preferences), {});
}

void RecordingController::startRegion(const Rect& area, RecordingPreferences preferences) {
    const bool isLargeEnough = area.width > smallestRegionSide && area.height > smallestRegionSide;
    if (state_ == State::idle && isLargeEnough) start(RegionSource{area}, std::move(preferences), {});
}

QCoro::Task<RecordingController::StartOutcome> RecordingController::start(CaptureSource source,
                                                                          RecordingPreferences preferences,
                                                                          std::stop_token cancel,
                                                                          StartedBy by) {
    if (state_ != State::idle) co_return Cancelled{};
    setState(State::starting);
    warnings_.clear();
    std::optional<Failed> failure;
    auto result = SourceStart::running;
    try {
        result = co_await startSources(std::move(source), std::move(preferences), cancel, by);
    } catch (const CaptureError& error) {
        failure = Failed{error.what(), error.advice()};
    } catch (const std::exception& error) {
        failure = Failed{error.what(), {}};
    }
    if (result == SourceStart::nothingPicked) co_return stayIdle(by);
    if (cancel.stop_requested() || result == SourceStart::givenUp) co_return co_await giveUp(by);
    if (failure) co_return co_await fail(*failure, by);
    setState(State::recording);
    qCInfo(Log::recording, "Recording started → %s", bundle_->url.filename().c_str());
    co_return Started{bundle_->url, warnings_};
}

/// Nothing was begun yet that would have to be undone; a camera that is warm stays so.
RecordingController::StartOutcome RecordingController::stayIdle(StartedBy by) {
    qCInfo(Log::recording, "Source selection cancelled / unavailable");
    if (by == StartedBy::user) presenter_.showRecordBar();
    setState(State::idle);
    return Cancelled{};
}

QCoro::Task<RecordingController::StartOutcome> RecordingController::giveUp(StartedBy by) {
    const auto unwanted = bundle_;
    co_await abortCapture();
    std::error_code ignored;
    if (unwanted) std::filesystem::remove_all(unwanted->url, ignored);
    if (by == StartedBy::user) presenter_.showRecordBar();
    co_return Cancelled{};
}

QCoro::Task<RecordingController::StartOutcome> RecordingController::fail(Failed failure, StartedBy by) {
    qCCritical(Log::recordingTold, "Failed to start recording: %s", failure.message.c_str());
    co_await abortCapture();
    const bool mayRecordScreen = permissions_.isGranted(Permission::screenRecording);
    if (by == StartedBy::user) co_await presenter_.tellFailure(failure.message, mayRecordScreen);
    co_return failure;
}

/// The order matters: whatever is slow comes before the countdown, and the screen's first frame is the time
/// zero that everything else is measured against.
QCoro::Task<RecordingController::SourceStart> RecordingController::startSources(
    CaptureSource source, RecordingPreferences preferences, std::stop_token cancel, StartedBy by) {
    applyPermissions(preferences);
    const auto target = co_await findTarget(std::move(source), cancel);
    if (!target) co_return SourceStart::nothingPicked;
    takePreflightPicture(target->filter);
    bundle_ = createBundle(preferences.libraryFolder);
    cameraChoice_ = preferences.camera;

    if (preferences.captureMicrophone) {
        const bool wanted = co_await prepareMicrophone(preferences.micDeviceID, by);
        if (!wanted) co_return SourceStart::givenUp;
    }
    if (cancel.stop_requested()) co_return SourceStart::givenUp;
    co_await prepareCamera(preferences.captureWebcam, preferences.webcamDeviceID, by);
    if (cancel.stop_requested()) co_return SourceStart::givenUp;
    // The camera's file begins during the countdown, so that it is really being written before the screen is.
    if (webcam_) webcam_->startRecording(bundle_->file(TakeBundle::webcamFile));
    if (preferences.hideDesktopIcons) presenter_.hideDesktopIcons();
    auto systemAudio = co_await openSystemAudio(preferences.captureSystemAudio, by);

    const int countdown = preferences.countdownSeconds;
    co_await countdown_.run(by == StartedBy::agent ? std::max(countdown, leastAgentCountdown) : countdown,
                            cancel);
    if (cancel.stop_requested()) co_return SourceStart::givenUp;
    if (webcam_) co_await webcam_->waitForFileStart(cameraStartLimit, clock_, cancel);
    if (cancel.stop_requested()) co_return SourceStart::givenUp;

    if (webcam_ && !platform_.leavesOutOwnWindows()) presenter_.hideCamera();
    co_await startScreen(*target, std::move(systemAudio), cancel);
    if (cancel.stop_requested()) co_return SourceStart::givenUp;
    if (!screen_->started()) throw CaptureError::noFrames();
    startInput();
    if (mic_) mic_->arm(screen_->timelineOrigin());
    co_return SourceStart::running;
}

/// What may not be used is silently off.
void RecordingController::applyPermissions(RecordingPreferences& preferences) const {
    using enum Permission;
    preferences.captureMicrophone = preferences.captureMicrophone && permissions_.isGranted(microphone);
    preferences.captureWebcam = preferences.captureWebcam && permissions_.isGranted(camera);
}

/// Nothing when the user was to pick and didn't.
QCoro::Task<std::optional<CaptureTarget>> RecordingController::findTarget(CaptureSource source,
                                                                          std::stop_token cancel) {
    if (std::holds_alternative<PickerSource>(source)) {
        const auto picker = platform_.makeSourcePicker();
        const Picked picked = co_await picker->pick(cancel);
        if (!picked.filter) co_return std::nullopt;
        co_return CaptureTarget{*picked.filter, std::nullopt, std::nullopt};
    }
    const ShareableContent content = platform_.shareableContent();
    permissions_.screenWasLookedAt();
    co_return resolveSource(source, content);
}

void RecordingController::takePreflightPicture(const ContentFilter& filter) {
    const double before = HostClock::seconds();
    bool pictureTaken = false;
    try {
        pictureTaken = platform_.takePreflightPicture(filter);
    } catch (const std::exception&) {
        // A source that can't be had fails the start where it is opened.
    }
    qCInfo(Log::recording, "Capture preflight %s in %ld ms", pictureTaken ? "ok" : "failed",
           std::lround(1000 * (HostClock::seconds() - before)));
}

QCoro::Task<bool> RecordingController::prepareMicrophone(std::string identifier, StartedBy by) {
    std::string reason;
    try {
        std::function<std::unique_ptr<LiveSoundSource>()> open = [this, identifier] {
            return devices_.openMicrophone(identifier);
        };
        auto microphone = co_await opened(std::move(open), clock_);
        mic_ = MicRecorder::start(std::move(microphone), bundle_->file(TakeBundle::microphoneFile));
        co_return true;
    } catch (const std::exception& error) {
        reason = error.what();
    }
    qCCritical(Log::recordingTold, "Microphone unavailable: %s", reason.c_str());
    if (by == StartedBy::agent) {
        warnings_.push_back("Recording without the microphone: " + reason);
        co_return true;
    }
    co_return co_await presenter_.confirmWithoutMicrophone(reason);
}

QCoro::Task<> RecordingController::prepareCamera(bool wanted, std::string identifier, StartedBy by) {
    if (!wanted) {
        warmCamera_.turnOff();
        co_return;
    }
    webcam_ = co_await warmCamera_.take();
    if (webcam_) co_return;  // nothing has to start again
    std::string reason;
    try {
        webcam_ = co_await warmCamera_.open(std::move(identifier));
        presenter_.showCamera(*webcam_, cameraChoice_);
        co_return;
    } catch (const std::exception& error) {
        reason = error.what();
    }
    qCCritical(Log::recordingTold, "Webcam unavailable: %s", reason.c_str());
    if (by == StartedBy::agent) {
        warnings_.push_back("Recording without the camera: " + reason);
    } else {
        co_await presenter_.tellWithoutCamera(reason);
    }
}

/// None when it isn't wanted or there is no sound server, which is told.
QCoro::Task<std::unique_ptr<LiveSoundSource>> RecordingController::openSystemAudio(bool wanted,
                                                                                   StartedBy by) {
    if (!wanted) co_return std::unique_ptr<LiveSoundSource>();
    try {
        std::function<std::unique_ptr<LiveSoundSource>()> open = [this] {
            return devices_.openSystemAudio();
        };
        co_return co_await opened(std::move(open), clock_);
    } catch (const std::exception& error) {
        qCCritical(Log::recordingTold, "System audio unavailable: %s", error.what());
        if (by == StartedBy::agent) {
            warnings_.push_back(std::string("Recording without system audio: ") + error.what());
        } else {
            presenter_.noteWithoutSystemAudio(error.what());
        }
    }
    co_return std::unique_ptr<LiveSoundSource>();
}

QCoro::Task<> RecordingController::setCameraPreview(bool on, std::string webcamDeviceID,
                                                    CameraChoice choice) {
    if (state_ != State::idle) co_return;
    if (on) {
        co_await warmCamera_.turnOn(std::move(webcamDeviceID), choice);
    } else {
        warmCamera_.turnOff();
    }
}

void RecordingController::refreshCameraPreview(const CameraChoice& choice) {
    if (state_ == State::idle) warmCamera_.show(choice);
}

QCoro::Task<> RecordingController::startScreen(CaptureTarget target,
                                               std::unique_ptr<LiveSoundSource> systemAudio,
                                               std::stop_token cancel) {
    // A window may have been moved or resized since it was chosen.
    target.filter = platform_.withPresentFrame(target.filter);
    streamStartHostTime_ = HostClock::nanoseconds();
    screen_ = ScreenCaptureEngine::start(platform_, target, std::move(systemAudio),
                                         bundle_->file(TakeBundle::screenFile),
                                         [this](const std::string& reason) { announceEnd(reason); });
    co_await screen_->waitForOrigin(originLimit, clock_, cancel);
}

/// Any thread: whoever listens hears it on the main one.
void RecordingController::announceEnd(const std::string& reason) {
    const auto text = QString::fromStdString(reason);
    QMetaObject::invokeMethod(
        this, [this, text] { Q_EMIT sourceEnded(text); }, Qt::QueuedConnection);
}

void RecordingController::startInput() {
    EventLog log;
    log.streamStartHostTime = streamStartHostTime_;
    log.captureRect = screen_->captureRect();
    const Rect frame{log.captureRect.x, log.captureRect.y, log.captureRect.width, log.captureRect.height};
    const double origin = screen_->timelineOrigin();
    auto cursor = startCursorSampler(platform_, origin, frame);
    auto eventTap = startEventTap(platform_);
    if (cameraRecorded()) showCameraInEdit();
    input_ = std::make_unique<InputRecorder>(*bundle_, std::move(log), origin, std::move(cursor),
                                             std::move(eventTap), [this] { return offsets(); });
}

/// Any thread.
FileOffsets RecordingController::offsets() const {
    const double origin = screen_->timelineOrigin();
    const auto micStart = mic_ ? mic_->firstSamplePTS() : std::nullopt;
    const auto webcamStart = webcam_ ? webcam_->fileStartHostTime() : std::nullopt;
    return {.webcam = webcamStart.value_or(origin) - origin, .mic = micStart.value_or(origin) - origin};
}

bool RecordingController::cameraRecorded() const {
    return webcam_ && webcam_->fileStartHostTime();
}

/// So that it also shows when the recorder dies before the stop.
void RecordingController::showCameraInEdit() const {
    EditParams edit;
    showCamera(edit, cameraChoice_);
    try {
        bundle_->write(edit);
    } catch (const std::system_error& error) {
        qCCritical(Log::recording, "Failed to write edit.json: %s", error.what());
    }
}

QCoro::Task<> RecordingController::stop(Afterwards afterwards) {
    if (state_ != State::recording || !bundle_ || !screen_) co_return;
    agentLimit_.reset();
    agentRecording_.reset();
    presenter_.restoreDesktopIcons();
    presenter_.hideCamera();
    setState(State::finishing);
    if (mic_) co_await mic_->stop(clock_);
    co_await screen_->stop(clock_);
    const EventLog log = input_->stop();
    if (webcam_) co_await webcam_->stop(clock_);
    logOffsets(log);
    bundle_->removeEmptyMedia();
    storeLog(log);
    lastBundle_ = bundle_->url;
    Q_EMIT lastBundleChanged(*lastBundle_);
    tearDown();
    setState(State::idle);
    if (afterwards == Afterwards::openEditor) {
        presenter_.openEditor(*lastBundle_);
    } else {
        leaveQuietly();
    }
}

/// After a recording that nobody started by hand nothing stays on the screen.
void RecordingController::leaveQuietly() {
    if (state_ != State::idle) return;
    presenter_.hideRecordBar();
    warmCamera_.turnOff();
}

QCoro::Task<RecordingController::AgentStartResult> RecordingController::startForAgent(
    Options options, CaptureSource source, RecordingPreferences preferences, std::stop_token cancel) {
    if (state_ != State::idle)
        co_return Failed{"Tessaloom is already recording. Stop that recording first.", {}};
    presenter_.hideRecordBar();
    preferences.captureMicrophone = options.captureMicrophone;
    preferences.captureWebcam = options.captureWebcam;
    preferences.captureSystemAudio = options.captureSystemAudio;
    auto outcome = co_await start(std::move(source), std::move(preferences), cancel, StartedBy::agent);
    if (auto* failure = std::get_if<Failed>(&outcome)) co_return std::move(*failure);
    auto* const started = std::get_if<Started>(&outcome);
    if (started == nullptr) co_return Failed{"The recording was cancelled before it started.", {}};
    limitAgentRecording(started->bundle);
    co_return std::move(*started);
}

/// An agent that forgets its recording doesn't fill the disk.
void RecordingController::limitAgentRecording(const std::filesystem::path& bundle) {
    agentRecording_ = bundle;
    agentLimit_ = std::make_unique<QFutureWatcher<void>>();
    connect(
        agentLimit_.get(), &QFutureWatcher<void>::finished, this,
        [this, bundle] {
            if (state_ != State::recording || agentRecording_ != bundle) return;
            qCInfo(Log::recording, "Agent recording reached its time limit; stopping it");
            stop(Afterwards::nothing);
        },
        Qt::QueuedConnection);  // the watcher ends with the recording
    agentLimit_->setFuture(clock_.after(agentLimit));
}

QCoro::Task<std::optional<std::filesystem::path>> RecordingController::stopForAgent() {
    if (state_ != State::recording) co_return std::nullopt;
    co_await stop(Afterwards::nothing);
    co_return lastBundle_;
}

void RecordingController::logOffsets(const EventLog& log) const {
    if (mic_ && mic_->firstSamplePTS())
        qCInfo(Log::recording, "Mic starts %.3fs after the origin", log.micStartOffset);
    if (cameraRecorded())
        qCInfo(Log::recording, "Webcam starts %.3fs relative to the origin", log.webcamStartOffset);
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
        keyframes =
            storeFirstEdit(*bundle_, log, cameraRecorded() ? std::optional(cameraChoice_) : std::nullopt);
    } catch (const std::system_error& error) {
        qCCritical(Log::recording, "Failed to write edit.json: %s", error.what());
        complete = false;
    }
    if (complete) input_->discardJournal();
    qCInfo(Log::recording, "Recording stopped: %zu cursor samples, %zu events, %zu zoom keyframes",
           log.cursorSamples.size(), log.events.size(), keyframes);
}

QCoro::Task<> RecordingController::abortCapture() {
    presenter_.restoreDesktopIcons();
    presenter_.hideCamera();
    warmCamera_.turnOff();
    co_await warmCamera_.untilLetGo();
    if (screen_) co_await screen_->stop(clock_);
    if (input_) {
        input_->stop();
        input_->discardJournal();
    }
    if (mic_) co_await mic_->stop(clock_);
    if (webcam_) co_await webcam_->stop(clock_);
    tearDown();
    setState(State::idle);
}

void RecordingController::tearDown() {
    input_.reset();
    screen_.reset();
    mic_.reset();
    webcam_.reset();
    bundle_.reset();
}

}  // namespace tessaloom
