// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "capture/RecordingPresenter.h"

namespace tessaloom::test {

/// Notes what it was asked and told, and shows nothing.
class NotingPresenter final : public RecordingPresenter {
  public:
    std::vector<std::string> told;
    std::vector<int> countdown;  ///< the numbers shown; 0 for being hidden
    std::vector<std::string> shown;
    std::vector<CameraChoice> choices;  ///< how the camera was shown
    std::vector<std::filesystem::path> opened;
    std::vector<std::string> bar;
    bool goesOn = true;

    void showCountdown(int secondsLeft) override { countdown.push_back(secondsLeft); }
    void hideCountdown() override { countdown.push_back(0); }
    void showCamera(WebcamRecorder&, const CameraChoice& choice) override {
        shown.emplace_back("camera");
        choices.push_back(choice);
    }
    void hideCamera() override { shown.emplace_back("no camera"); }
    void hideDesktopIcons() override { shown.emplace_back("no icons"); }
    void restoreDesktopIcons() override { shown.emplace_back("icons"); }
    QCoro::Task<bool> confirmWithoutMicrophone(std::string reason) override {
        told.push_back("microphone: " + reason);
        co_return goesOn;
    }
    QCoro::Task<> tellWithoutCamera(std::string reason) override {
        told.push_back("camera: " + reason);
        co_return;
    }
    void noteWithoutSystemAudio(const std::string& reason) override {
        told.push_back("system audio: " + reason);
    }
    QCoro::Task<> tellFailure(std::string reason, bool mayRecordScreen) override {
        told.push_back((mayRecordScreen ? "failure: " : "no permission: ") + reason);
        co_return;
    }
    void openEditor(const std::filesystem::path& bundle) override { opened.push_back(bundle); }
    void showRecordBar() override { bar.emplace_back("shown"); }
    void hideRecordBar() override { bar.emplace_back("hidden"); }
};

}  // namespace tessaloom::test
