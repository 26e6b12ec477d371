// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <variant>

#include "capture/CapturePlatform.h"
#include "capture/CaptureSource.h"
#include "capture/InputRecorder.h"
#include "capture/RecordingPreferences.h"
#include "capture/RecordingPresenter.h"
#include "capture/ScreenCaptureEngine.h"
#include "core/TakeBundle.h"

namespace tessaloom {

/// The life of a recording: starts its sources in a fixed order on one clock, and turns what they produced
/// into a finished bundle. Confined to the main thread; must outlive the coroutines it returns.
class RecordingController : public QObject {
    Q_OBJECT

  public:
    enum class State { idle, starting, recording, finishing };

    struct Started {
        std::filesystem::path bundle;
    };
    struct Failed {
        std::string message;  ///< for the user
    };
    struct Cancelled {};
    using StartOutcome = std::variant<Started, Failed, Cancelled>;

    RecordingController(CapturePlatform& platform, RecordingPresenter& presenter)
        : platform_(platform), presenter_(presenter) {}

    State state() const { return state_; }
    /// The last finished recording's.
    const std::optional<std::filesystem::path>& lastBundle() const { return lastBundle_; }

    /// A start that fails leaves its bundle folder, one that is cancelled through `cancel` removes it.
    /// Cancelled is also the answer, with no effect, while another recording is going on.
    QCoro::Task<StartOutcome> start(CaptureSource source, RecordingPreferences preferences,
                                    std::stop_token cancel);

    /// Does nothing unless a recording is going on. Never loses what was recorded.
    QCoro::Task<> stop();

  Q_SIGNALS:
    void stateChanged(tessaloom::RecordingController::State state);
    /// The source went away (a closed window, a lost server) or its file can't be written. The recording goes
    /// on with what it has until it is stopped.
    void sourceEnded(const QString& reason);

  private:
    void setState(State state);
    QCoro::Task<> startSources(CaptureSource source, RecordingPreferences preferences,
                               std::stop_token cancel);
    void announceEnd(const std::string& reason);
    QCoro::Task<> countDown(int seconds, std::stop_token cancel);
    void startInput(std::uint64_t streamStartHostTime);
    void storeLog(const EventLog& log);
    QCoro::Task<> abortCapture();
    void tearDown();

    CapturePlatform& platform_;
    RecordingPresenter& presenter_;
    State state_ = State::idle;
    std::optional<std::filesystem::path> lastBundle_;
    std::optional<TakeBundle> bundle_;
    std::unique_ptr<ScreenCaptureEngine> screen_;
    std::unique_ptr<InputRecorder> input_;
};

}  // namespace tessaloom
