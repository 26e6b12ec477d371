// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/RecordingPresenter.h"
#include "capture/RecordingWindows.h"
#include "shell/ProgressLine.h"

namespace tessaloom {

/// A recording on the command line: lines on the terminal, and windows where there is a screen for them.
class CommandPresenter final : public RecordingPresenter {
  public:
    /// No `windows` without a screen.
    CommandPresenter(ProgressLine& line, RecordingWindows* windows) : line_(line), windows_(windows) {}

    void showCountdown(int secondsLeft) override;
    void hideCountdown() override;
    void showCamera(WebcamRecorder& camera, const CameraChoice& choice) override;
    void hideCamera() override;
    void hideDesktopIcons() override;
    void restoreDesktopIcons() override;
    QCoro::Task<bool> confirmWithoutMicrophone(std::string reason) override;
    QCoro::Task<> tellWithoutCamera(std::string reason) override;
    void noteWithoutSystemAudio(const std::string& reason) override;
    /// Only kept: the command itself ends with it.
    QCoro::Task<> tellFailure(std::string reason, bool mayRecordScreen) override;
    /// The command itself ends with the bundle's path.
    void openEditor(const std::filesystem::path&) override {}

    /// Why the recording could not start, as a line for the terminal.
    const std::string& failure() const { return failure_; }

  private:
    ProgressLine& line_;
    RecordingWindows* windows_;
    std::string failure_;
};

}  // namespace tessaloom
