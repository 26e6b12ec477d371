// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <QFutureWatcher>
#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <variant>
#include <vector>

#include "base/WaitClock.h"
#include "capture/CapturePlatform.h"
#include "capture/CaptureSource.h"
#include "capture/CountdownController.h"
#include "capture/InputRecorder.h"
#include "capture/MicRecorder.h"
#include "capture/PermissionsManager.h"
#include "capture/RecordingDevices.h"
#include "capture/RecordingPreferences.h"
#include "capture/RecordingPresenter.h"
#include "capture/ScreenCaptureEngine.h"
#include "capture/WarmCamera.h"
#include "capture/WebcamRecorder.h"
#include "core/TakeBundle.h"

namespace tessaloom {

/// The life of a recording: starts its sources in a fixed order on one clock, and turns what they produced
/// into a finished bundle. Confined to the main thread; must outlive the coroutines it returns.
class RecordingController : public QObject {
    Q_OBJECT

  public:
    enum class State { idle, starting, recording, finishing };

    /// Whether somebody is there to be asked and told. An agent can't answer: what a user would be asked is
    /// taken as going on, and what a user would be told comes back as a warning.
    enum class StartedBy { user, agent };

    /// What happens to a finished recording.
    enum class Afterwards { openEditor, nothing };

    using Options = RecordingOptions;

    struct Started {
        std::filesystem::path bundle;
        std::vector<std::string> warnings;  ///< for an agent only
    };
    struct Failed {
        std::string message;  ///< for the user
        std::string advice;   ///< a sentence beyond it, if there is one
    };
    struct Cancelled {};
    using StartOutcome = std::variant<Started, Failed, Cancelled>;
    using AgentStartResult = std::variant<Started, Failed>;

    /// All of them must outlive it. `clock` is what its countdowns and time limits go by.
    RecordingController(CapturePlatform& platform, RecordingDevices& devices, RecordingPresenter& presenter,
                        PermissionsManager& permissions, WaitClock& clock = WaitClock::host())
        : platform_(platform),
          devices_(devices),
          presenter_(presenter),
          permissions_(permissions),
          clock_(clock),
          countdown_(platform, presenter, clock) {}

    State state() const { return state_; }
    /// The last finished recording's.
    const std::optional<std::filesystem::path>& lastBundle() const { return lastBundle_; }

    /// These three are a user's, and go on by themselves: stateChanged() tells how. `preferences` are
    /// RecordingPreferences::stored(), with the options of the place that the start comes from.
    ///
    /// Records the main display, or stops what is being recorded; nothing while either is under way.
    void toggle(RecordingPreferences preferences);
    /// Records what the user picks by sight; nothing unless idle.
    void startPicked(RecordingPreferences preferences);
    /// Records an area in global points; nothing unless idle, or when it isn't wider and taller than 8.
    void startRegion(const Rect& area, RecordingPreferences preferences);

    /// A start that fails leaves its bundle folder, one that is cancelled through `cancel` removes it.
    /// Cancelled is also the answer, with no effect, while another recording is going on.
    /// An agent's countdown is 3 seconds at least, so that a human who watches is warned.
    QCoro::Task<StartOutcome> start(CaptureSource source, RecordingPreferences preferences,
                                    std::stop_token cancel, StartedBy by = StartedBy::user);

    /// Warms the camera up while no recording is going on, or lets it go; of several calls the last one
    /// counts. A recording that wants the camera takes over the warm one. A camera that may not or can't be
    /// opened is logged, and stays off.
    QCoro::Task<> setCameraPreview(bool on, std::string webcamDeviceID, CameraChoice choice = {});
    /// Shows the warm camera's picture anew, as it is chosen now; nothing without one, or while recording.
    void refreshCameraPreview(const CameraChoice& choice);
    bool hasCameraPreview() const { return warmCamera_.isOn(); }

    /// Does nothing unless a recording is going on. Never loses what was recorded.
    QCoro::Task<> stop(Afterwards afterwards = Afterwards::openEditor);

    /// Starts for an agent: `options` stand, whatever `preferences` say of the same, no question is asked,
    /// and the recording is stopped after ten minutes at the latest.
    QCoro::Task<AgentStartResult> startForAgent(Options options, CaptureSource source,
                                                RecordingPreferences preferences,
                                                std::stop_token cancel = {});
    /// The finished bundle; nothing unless a recording is going on.
    QCoro::Task<std::optional<std::filesystem::path>> stopForAgent();

  Q_SIGNALS:
    void stateChanged(tessaloom::RecordingController::State state);
    /// A recording is finished. Before the state is idle again.
    void lastBundleChanged(const std::filesystem::path& bundle);
    /// The source went away (a closed window, a lost server) or its file can't be written. The recording goes
    /// on with what it has until it is stopped.
    void sourceEnded(const QString& reason);

  private:
    /// How far the sources' start came.
    enum class SourceStart { running, nothingPicked, givenUp };

    void setState(State state);
    QCoro::Task<SourceStart> startSources(CaptureSource source, RecordingPreferences preferences,
                                          std::stop_token cancel, StartedBy by);
    void applyPermissions(RecordingPreferences& preferences) const;
    QCoro::Task<bool> prepareMicrophone(std::string identifier, StartedBy by);
    QCoro::Task<> prepareCamera(bool wanted, std::string identifier, StartedBy by);
    QCoro::Task<std::unique_ptr<LiveSoundSource>> openSystemAudio(bool wanted, StartedBy by);
    QCoro::Task<std::optional<CaptureTarget>> findTarget(CaptureSource source, std::stop_token cancel);
    void takePreflightPicture(const ContentFilter& filter);
    StartOutcome stayIdle(StartedBy by);
    QCoro::Task<StartOutcome> giveUp(StartedBy by);
    QCoro::Task<StartOutcome> fail(Failed failure, StartedBy by);
    void limitAgentRecording(const std::filesystem::path& bundle);
    void leaveQuietly();
    QCoro::Task<> startScreen(CaptureTarget target, std::unique_ptr<LiveSoundSource> systemAudio,
                              std::stop_token cancel);
    void announceEnd(const std::string& reason);
    void startInput();
    FileOffsets offsets() const;
    bool cameraRecorded() const;
    void showCameraInEdit() const;
    void logOffsets(const EventLog& log) const;
    void storeLog(const EventLog& log);
    QCoro::Task<> abortCapture();
    void tearDown();

    CapturePlatform& platform_;
    RecordingDevices& devices_;
    RecordingPresenter& presenter_;
    PermissionsManager& permissions_;
    WaitClock& clock_;
    CountdownController countdown_;
    State state_ = State::idle;
    std::optional<std::filesystem::path> lastBundle_;
    std::optional<TakeBundle> bundle_;
    CameraChoice cameraChoice_;
    std::optional<std::filesystem::path> agentRecording_;  ///< only while an agent's recording runs
    std::unique_ptr<QFutureWatcher<void>> agentLimit_;
    std::vector<std::string> warnings_;
    std::uint64_t streamStartHostTime_ = 0;
    WarmCamera warmCamera_{devices_, presenter_, permissions_, clock_};
    std::unique_ptr<MicRecorder> mic_;
    std::unique_ptr<WebcamRecorder> webcam_;
    std::unique_ptr<ScreenCaptureEngine> screen_;
    std::unique_ptr<InputRecorder> input_;  ///< after mic and camera, whose starts it asks for
};

}  // namespace tessaloom
