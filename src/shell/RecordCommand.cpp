// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/RecordCommand.h"

#include <QCoroTimer>
#include <QGuiApplication>
#include <QPromise>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <optional>
#include <thread>

#include "base/BoundedWait.h"
#include "base/Log.h"
#include "base/TimeLimit.h"
#include "capture/RecordingController.h"
#include "shell/CommandPresenter.h"
#include "shell/ExitGuard.h"
#include "shell/InterruptSignals.h"
#include "shell/ProgressLine.h"
#include "shell/RecordArguments.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// Beyond all that the end of a recording waits for.
constexpr auto completionLimit = 40s;

/// What an X server gets to take the windows down before it counts as gone.
constexpr auto windowsEndLimit = 4s;

constexpr const char* displayLost = "The connection to the X server was lost.";

/// None where Qt has no screen to show them on.
std::unique_ptr<RecordingWindows> windowsIfVisible(CapturePlatform& platform) {
    return QGuiApplication::platformName() == "offscreen" ? nullptr
                                                          : std::make_unique<RecordingWindows>(platform);
}

/// One run of the command, from the first countdown second to the stored bundle.
class RecordRun {
  public:
    RecordRun(const RecordArguments& arguments, CapturePlatform& platform, RecordingDevices& devices,
              std::function<void()> hangUpWindows)
        : hangUpWindows_(std::move(hangUpWindows)),
          arguments_(arguments),
          interrupts_([this] { interrupt(); }, hangUpWindows_),
          windows_(windowsIfVisible(platform)),
          controller_(platform, devices, presenter_, permissions_) {
        end_.start();
        QObject::connect(&controller_, &RecordingController::sourceEnded, &controller_,
                         [this](const QString& reason) {
                             endReason_ = reason.toStdString();
                             end_.finish();
                         });
    }

    /// Returns when the run has ended; throws what made it fail.
    ExitStatus waitForEnd() {
        std::exception_ptr failure;
        const ExitStatus status = QCoro::waitFor(runCatching(failure));
        windowsEnd_.emplace(windowsEndLimit, hangUpWindows_);
        if (failure) std::rethrow_exception(failure);
        return status;
    }

  private:
    /// A task that ends by an exception never wakes the one who waits for it.
    QCoro::Task<ExitStatus> runCatching(std::exception_ptr& failure) {
        try {
            status_ = co_await run();
            co_return *status_;
        } catch (...) {
            failure = std::current_exception();
        }
        status_ = ExitStatus::failed;
        co_return *status_;
    }

    QCoro::Task<ExitStatus> run() {
        const auto source = co_await chosenSource();
        if (!source) co_return ExitStatus::interrupted;
        const auto outcome = co_await controller_.start(*source, preferences(), cancel_.get_token());
        if (std::holds_alternative<RecordingController::Cancelled>(outcome))
            co_return ExitStatus::interrupted;
        if (const auto* failure = std::get_if<RecordingController::Failed>(&outcome)) {
            throw CommandError(wholeReason(*failure));
        }
        co_await untilEnd();
        line_.show(std::string());
        co_await controller_.stop();
        if (endReason_) std::cerr << *endReason_ << " What was recorded until then is saved.\n";
        std::cout << controller_.lastBundle()->string() << std::endl;
        co_return ExitStatus::done;
    }

    /// With what is known beyond the words that the user of a window would be shown.
    std::string wholeReason(const RecordingController::Failed& failure) const {
        std::string reason = presenter_.failure();
        if (!failure.advice.empty()) reason += " " + failure.advice;
        if (endReason_) reason += " " + *endReason_;
        return reason;
    }

    /// Nothing when the user was to select an area and cancelled. A pick is left to the recording.
    QCoro::Task<std::optional<CaptureSource>> chosenSource() {
        if (std::holds_alternative<PickerSource>(arguments_.source) && !windows_) {
            throw CommandError("There is no screen to pick from. Choose with --display or --window.");
        }
        if (!arguments_.selectsArea) co_return arguments_.source;
        if (!windows_) {
            throw CommandError("There is no screen to select an area on. Give it as --area X,Y,W,H.");
        }
        const auto area = co_await windows_->regionSelection().selectRegion(cancel_.get_token());
        if (!area) co_return std::nullopt;
        co_return CaptureSource(RegionSource{*area});
    }

    RecordingPreferences preferences() const {
        auto preferences = RecordingPreferences::stored(Defaults::standard());
        preferences.countdownSeconds = arguments_.countdownSeconds.value_or(preferences.countdownSeconds);
        preferences.captureMicrophone = arguments_.microphone.value_or(preferences.captureMicrophone);
        preferences.captureWebcam = arguments_.camera.value_or(preferences.captureWebcam);
        preferences.captureSystemAudio = arguments_.systemAudio.value_or(preferences.captureSystemAudio);
        return preferences;
    }

    void interrupt() {
        // Before the recording runs this gives it up; afterwards it is how the user stops it.
        if (controller_.state() != RecordingController::State::recording) cancel_.request_stop();
        end_.finish();
    }

    /// The screen is gone, and with it Qt's event loop, whose posted events are all that still arrives.
    void finishWithoutEventLoop() {
        using enum RecordingController::State;
        const auto state = controller_.state();
        const bool hasBegun = state == recording || state == finishing || controller_.lastBundle();
        if (!hasBegun) {
            std::cerr << "tessaloom: " << displayLost
                      << " Nothing was recorded; start again in a session that runs.\n";
            return;
        }
        if (!endReason_) endReason_ = displayLost;
        end_.finish();
        const auto limit = steady_clock::now() + completionLimit;
        while (!status_ && steady_clock::now() < limit) {
            QCoreApplication::sendPostedEvents();
            std::this_thread::sleep_for(5ms);
        }
        // Threads may be at work on what an ordinary exit takes down.
        if (status_) std::_Exit(static_cast<int>(*status_));
    }

    QCoro::Task<> untilEnd() {
        const auto start = steady_clock::now();
        bool ended = false;
        while (!ended) {
            const std::chrono::duration<double> passed = steady_clock::now() - start;
            showElapsed(passed.count());
            const double left = arguments_.durationSeconds.value_or(passed.count() + 1.0) - passed.count();
            if (left <= 0) co_return;
            const std::chrono::duration<double> wait(std::min(left, 0.2));
            ended = co_await waitBounded(end_.future(), std::chrono::ceil<std::chrono::milliseconds>(wait));
        }
    }

    void showElapsed(double seconds) {
        const int whole = static_cast<int>(seconds);
        const std::string padded = (whole % 60 < 10 ? "0" : "") + std::to_string(whole % 60);
        line_.show("● Recording  " + std::to_string(whole / 60) + ":" + padded + "   Ctrl-C to stop");
    }

    std::function<void()> hangUpWindows_;
    /// Before the windows, so that it outlives them: they wait for the display server as they go.
    std::optional<TimeLimit> windowsEnd_;
    RecordArguments arguments_;
    std::stop_source cancel_;
    QPromise<void> end_;
    std::optional<std::string> endReason_;
    std::optional<ExitStatus> status_;
    InterruptSignals interrupts_;
    ProgressLine line_{"Recording"};
    std::unique_ptr<RecordingWindows> windows_;
    CommandPresenter presenter_{line_, windows_.get()};
    UnrestrictedDesktop permissionSystem_;
    PermissionsManager permissions_{Defaults::standard(), permissionSystem_};
    RecordingController controller_;
    ExitGuard finishFirst_{[this] { finishWithoutEventLoop(); }};
};

}  // namespace

ExitStatus runRecordCommand(const QStringList& words, CapturePlatform& platform, RecordingDevices& devices,
                            std::function<void()> hangUpWindows) {
    Log::leaveOutWhatIsTold();
    RecordRun run(RecordArguments::parse(words), platform, devices, std::move(hangUpWindows));
    return run.waitForEnd();
}

}  // namespace tessaloom
