// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>
#include <QCoreApplication>
#include <future>
#include <thread>
#include "capture/CaptureError.h"
#include "capture/NotingPresenter.h"
#include "capture/RecordingController.h"
#include "capture/ScriptedDevices.h"
#include "capture/ScriptedPlatform.h"
#include "media/MovieReader.h"
#include "support/LogLines.h"
#include "support/ManualWaitClock.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::test {

using Script = ScriptedStream::Script;
using State = RecordingController::State;
using namespace std::chrono_literals;

/// Everything is granted, with exceptions.
struct ScriptedPermissions final : PermissionSystem {
    std::map<Permission, PermissionStatus> exceptions;

    PermissionStatus status(Permission permission) override {
        const auto found = exceptions.find(permission);
        return found == exceptions.end() ? PermissionStatus::granted : found->second;
    }
    QCoro::Task<> ask(Permission) override { co_return; }
};

class Recording : public ::testing::Test {
  protected:
    using StartedBy = RecordingController::StartedBy;

    Recording() {
        preferences.countdownSeconds = 0;
        preferences.libraryFolder = folder.path() / "library";
        preferences.captureMicrophone = false;
        preferences.captureSystemAudio = false;
    }
    QCoro::Task<RecordingController::StartOutcome> startTask(StartedBy by = StartedBy::user) {
        return controller.start(MainDisplaySource{}, preferences, cancel.get_token(), by);
    }
    RecordingController::StartOutcome start(StartedBy by = StartedBy::user) {
        return throughCountdown(startTask(by));
    }
    RecordingController::AgentStartResult startForAgent(RecordingController::Options options = {}) {
        return throughCountdown(
            controller.startForAgent(options, MainDisplaySource{}, preferences, cancel.get_token()));
    }
    TakeBundle startedBundle() { return {std::get<RecordingController::Started>(start()).bundle}; }
    void stop() { QCoro::waitFor(controller.stop()); }

    /// Lets only the countdown's time pass.
    template <typename Outcome>
    Outcome throughCountdown(QCoro::Task<Outcome> task) {
        const bool ended = clock.runUntil([&] {
            for (const auto slice : {100ms, 120ms}) {
                if (clock.somebodyWaits(slice)) clock.advance(slice);
            }
            return task.isReady();
        });
        EXPECT_TRUE(ended);
        return QCoro::waitFor(task);
    }
    void except(std::map<Permission, PermissionStatus> exceptions) {
        permissionSystem.exceptions = std::move(exceptions);
        permissions.refresh();
    }
    void setPreview(bool on) { QCoro::waitFor(controller.setCameraPreview(on, "chosen")); }
    std::size_t bundleCount() const {
        const std::filesystem::directory_iterator entries(folder.path() / "library");
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }

    test::ScriptedPlatform platform;
    test::ScriptedDevices devices;
    test::TemporaryFolder folder;
    test::NotingPresenter presenter;
    RecordingPreferences preferences;
    std::stop_source cancel;
    test::ManualWaitClock clock;
    ScriptedPermissions permissionSystem;
    PermissionsManager permissions{Defaults(folder.path() / "settings.ini"), permissionSystem};
    RecordingController controller{platform, devices, presenter, permissions, clock};
};

}  // namespace tessaloom::test
