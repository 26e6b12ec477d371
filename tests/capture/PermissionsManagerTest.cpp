// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/PermissionsManager.h"

#include <gtest/gtest.h>

#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using enum Permission;
using Status = PermissionStatus;

/// A desktop that grants nothing before it was asked, and notes what it was asked for.
class CarefulDesktop final : public PermissionSystem {
  public:
    std::map<Permission, Status> answers;
    std::vector<Permission> asked;

    Status status(Permission permission) override {
        const auto answer = answers.find(permission);
        return answer == answers.end() ? Status::notDetermined : answer->second;
    }
    QCoro::Task<> ask(Permission permission) override {
        asked.push_back(permission);
        co_return;
    }
};

class Permissions : public ::testing::Test {
  protected:
    /// What a new user is asked for by this many presses of the one button.
    void requestNext(PermissionsManager& manager, int times = 1) {
        for (int press = 0; press < times; ++press)
            QCoro::waitFor(manager.requestNext());
    }

    test::TemporaryFolder folder;
    Defaults defaults{folder.path() / "settings.ini"};
    CarefulDesktop desktop;
};

TEST_F(Permissions, AreAllGrantedWhereTheDesktopHasNothingToAsk) {
    UnrestrictedDesktop unrestricted;
    PermissionsManager manager(defaults, unrestricted);
    EXPECT_TRUE(manager.allSettled());
    EXPECT_FALSE(manager.hasUndecided());
    for (const Permission each : {screenRecording, microphone, camera, accessibility, speech})
        EXPECT_TRUE(manager.isGranted(each));
    manager.screenWasLookedAt();
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "settings.ini")) << "nobody was asked";
}

TEST_F(Permissions, OfScreenAndInputStayUndecidedUntilTheNextLaunch) {
    auto first = std::make_unique<PermissionsManager>(defaults, desktop);
    EXPECT_EQ(first->status(screenRecording), Status::notDetermined);
    EXPECT_EQ(first->status(accessibility), Status::notDetermined);
    QCoro::waitFor(first->request(screenRecording));
    QCoro::waitFor(first->request(accessibility));
    EXPECT_EQ(first->status(screenRecording), Status::notDetermined);
    EXPECT_EQ(first->status(accessibility), Status::notDetermined);
    const PermissionsManager second(defaults, desktop);
    EXPECT_EQ(second.status(screenRecording), Status::denied);
    EXPECT_EQ(second.status(accessibility), Status::denied);
}

TEST_F(Permissions, ALookAtTheScreenCountsAsHavingAsked) {
    PermissionsManager(defaults, desktop).screenWasLookedAt();
    EXPECT_EQ(PermissionsManager(defaults, desktop).status(screenRecording), Status::denied);
}

TEST_F(Permissions, OfDevicesAreAsTheDesktopSays) {
    desktop.answers = {{microphone, Status::denied}, {camera, Status::unknown}, {speech, Status::granted}};
    const PermissionsManager manager(defaults, desktop);
    EXPECT_EQ(manager.status(microphone), Status::denied);
    EXPECT_EQ(manager.status(camera), Status::unknown);
    EXPECT_EQ(manager.status(speech), Status::granted);
}

TEST_F(Permissions, AreSettledWhenEachIsGrantedOrDenied) {
    desktop.answers = {{screenRecording, Status::granted},
                       {accessibility, Status::granted},
                       {microphone, Status::denied},
                       {camera, Status::granted}};
    PermissionsManager manager(defaults, desktop);
    EXPECT_FALSE(manager.allSettled()) << "speech is open";
    EXPECT_TRUE(manager.hasUndecided());
    desktop.answers[speech] = Status::denied;
    manager.refresh();
    EXPECT_TRUE(manager.allSettled());
    EXPECT_FALSE(manager.hasUndecided());
}

TEST_F(Permissions, AnOpenScreenIsNoUndecidedDevice) {
    desktop.answers = {{microphone, Status::denied}, {camera, Status::granted}, {speech, Status::granted}};
    const PermissionsManager manager(defaults, desktop);
    EXPECT_FALSE(manager.hasUndecided());
    EXPECT_FALSE(manager.allSettled());
}

TEST_F(Permissions, AreAskedForInOneOrder) {
    PermissionsManager manager(defaults, desktop);
    requestNext(manager, 2);
    desktop.answers[screenRecording] = Status::granted;
    manager.refresh();
    for (const Permission each : {microphone, camera, speech}) {
        requestNext(manager);
        desktop.answers[each] = Status::granted;
        manager.refresh();
    }
    requestNext(manager);
    EXPECT_EQ(desktop.asked, (std::vector{accessibility, screenRecording, microphone, camera, speech}));
}

TEST_F(Permissions, TheScreenIsAskedForAgainUntilItIsGranted) {
    PermissionsManager manager(defaults, desktop);
    requestNext(manager, 3);
    EXPECT_EQ(desktop.asked, (std::vector{accessibility, screenRecording, screenRecording}));
}

TEST_F(Permissions, WhatWasDeniedIsPassedOver) {
    desktop.answers = {
        {screenRecording, Status::granted}, {accessibility, Status::granted}, {microphone, Status::denied}};
    PermissionsManager manager(defaults, desktop);
    requestNext(manager);
    EXPECT_EQ(desktop.asked, std::vector{camera});
}

TEST_F(Permissions, AreReadAnewAfterEachRequest) {
    PermissionsManager manager(defaults, desktop);
    int readings = 0;
    QObject::connect(&manager, &PermissionsManager::refreshed, [&] { ++readings; });
    desktop.answers[camera] = Status::granted;
    QCoro::waitFor(manager.request(camera));
    EXPECT_EQ(readings, 1);
    EXPECT_TRUE(manager.isGranted(camera));
}

}  // namespace
}  // namespace tessaloom
