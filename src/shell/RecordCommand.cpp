// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/RecordCommand.h"

#include <QCoroTimer>
#include <QPromise>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>

#include "base/BoundedWait.h"
#include "capture/RecordingController.h"
#include "shell/InterruptSignals.h"
#include "shell/ProgressLine.h"
#include "shell/RecordArguments.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

class TerminalPresenter final : public RecordingPresenter {
  public:
    explicit TerminalPresenter(ProgressLine& line) : line_(line) {}

    void showCountdown(int secondsLeft) override {
        line_.show("Recording starts in " + std::to_string(secondsLeft) + " …");
    }
    void hideCountdown() override { line_.show(std::string()); }

    // Nobody may be there to answer, and a recording with less in it is better than none.
    QCoro::Task<bool> confirmWithoutMicrophone(std::string reason) override {
        std::cerr << "Recording without the microphone: " << reason << '\n';
        co_return true;
    }
    QCoro::Task<> tellWithoutCamera(std::string reason) override {
        std::cerr << "Recording without the camera: " << reason << '\n';
        co_return;
    }
    // The command itself ends with the reason, or with the bundle's path.
    QCoro::Task<> tellFailure(std::string, bool) override { co_return; }
    void openEditor(const std::filesystem::path&) override {}

  private:
    ProgressLine& line_;
};

/// One run of the command, from the first countdown second to the stored bundle.
class RecordRun {
  public:
    RecordRun(const RecordArguments& arguments, CapturePlatform& platform, RecordingDevices& devices)
        : arguments_(arguments),
          interrupts_([this] { interrupt(); }),
          presenter_(line_),
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
        if (failure) std::rethrow_exception(failure);
        return status;
    }

  private:
    /// A task that ends by an exception never wakes the one who waits for it.
    QCoro::Task<ExitStatus> runCatching(std::exception_ptr& failure) {
        try {
            co_return co_await run();
        } catch (...) {
            failure = std::current_exception();
        }
        co_return ExitStatus::failed;
    }

    QCoro::Task<ExitStatus> run() {
        const auto outcome =
            co_await controller_.start(arguments_.source, preferences(), cancel_.get_token());
        if (std::holds_alternative<RecordingController::Cancelled>(outcome))
            co_return ExitStatus::interrupted;
        if (const auto* failure = std::get_if<RecordingController::Failed>(&outcome)) {
            throw CommandError(failure->message);
        }
        co_await untilEnd();
        line_.show(std::string());
        co_await controller_.stop();
        if (endReason_) std::cerr << *endReason_ << " What was recorded until then is saved.\n";
        std::cout << controller_.lastBundle()->string() << std::endl;
        co_return ExitStatus::done;
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

    RecordArguments arguments_;
    std::stop_source cancel_;
    QPromise<void> end_;
    std::optional<std::string> endReason_;
    InterruptSignals interrupts_;
    ProgressLine line_{"Recording"};
    TerminalPresenter presenter_;
    UnrestrictedDesktop permissionSystem_;
    PermissionsManager permissions_{Defaults::standard(), permissionSystem_};
    RecordingController controller_;
};

}  // namespace

ExitStatus runRecordCommand(const QStringList& words, CapturePlatform& platform, RecordingDevices& devices) {
    RecordRun run(RecordArguments::parse(words), platform, devices);
    return run.waitForEnd();
}

}  // namespace tessaloom
