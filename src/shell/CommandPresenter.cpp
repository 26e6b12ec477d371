// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/CommandPresenter.h"

#include <iostream>

namespace tessaloom {

void CommandPresenter::showCountdown(int secondsLeft) {
    line_.show("Recording starts in " + std::to_string(secondsLeft) + " …");
    if (windows_) windows_->showCountdown(secondsLeft);
}

void CommandPresenter::hideCountdown() {
    line_.show(std::string());
    if (windows_) windows_->hideCountdown();
}

void CommandPresenter::showCamera(WebcamRecorder& camera, const CameraChoice& choice) {
    if (windows_) windows_->showCamera(camera, choice);
}

void CommandPresenter::hideCamera() {
    if (windows_) windows_->hideCamera();
}

void CommandPresenter::hideDesktopIcons() {
    if (windows_) windows_->hideDesktopIcons();
}

void CommandPresenter::restoreDesktopIcons() {
    if (windows_) windows_->restoreDesktopIcons();
}

// Nobody may be there to answer, and a recording with less in it is better than none.
QCoro::Task<bool> CommandPresenter::confirmWithoutMicrophone(std::string reason) {
    std::cerr << "Recording without the microphone: " << reason << '\n';
    co_return true;
}

QCoro::Task<> CommandPresenter::tellWithoutCamera(std::string reason) {
    std::cerr << "Recording without the camera: " << reason << '\n';
    co_return;
}

void CommandPresenter::noteWithoutSystemAudio(const std::string& reason) {
    std::cerr << "Recording without system audio: " << reason << '\n';
}

}  // namespace tessaloom
