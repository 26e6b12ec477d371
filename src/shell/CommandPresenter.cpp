// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/CommandPresenter.h"

#include <iostream>

#include "capture/RecordingDialogs.h"

namespace tessaloom {
namespace {

/// Its title, then its text, whose paragraphs follow each other.
std::string onOneLine(const DialogText& dialog) {
    std::string line = dialog.title + ": " + dialog.text;
    for (auto gap = line.find("\n\n"); gap != std::string::npos; gap = line.find("\n\n", gap))
        line.replace(gap, 2, " ");
    return line;
}

}  // namespace

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
    std::cerr << onOneLine(microphoneDialog(reason)) << '\n';
    co_return true;
}

QCoro::Task<> CommandPresenter::tellWithoutCamera(std::string reason) {
    std::cerr << onOneLine(cameraDialog(reason)) << '\n';
    co_return;
}

QCoro::Task<> CommandPresenter::tellFailure(std::string reason, bool mayRecordScreen) {
    failure_ = onOneLine(startFailedDialog(reason, mayRecordScreen));
    co_return;
}

void CommandPresenter::noteWithoutSystemAudio(const std::string& reason) {
    std::cerr << "Recording without system audio: " << reason << '\n';
}

}  // namespace tessaloom
