// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "capture/RecordingPresenter.h"
#include "capture/RecordingWindows.h"
#include "shell/ProgressLine.h"

namespace tessaloom {

/// A recording on the command line: lines on the terminal, and windows where there is a screen for them.
class CommandPresenter final : public RecordingPresenter {
  public:
    /// No `windows` without a screen.
    CommandPresenter(ProgressLine& line, std::unique_ptr<RecordingWindows> windows)
        : line_(line), windows_(std::move(windows)) {}

    void showCountdown(int secondsLeft) override;
    void hideCountdown() override;
    QCoro::Task<bool> confirmWithoutMicrophone(std::string reason) override;
    QCoro::Task<> tellWithoutCamera(std::string reason) override;

  private:
    ProgressLine& line_;
    std::unique_ptr<RecordingWindows> windows_;
};

}  // namespace tessaloom
