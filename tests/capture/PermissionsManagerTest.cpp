// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/PermissionsManager.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <optional>
#include <thread>

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
    std::vector<PrivacyPane> opened;
    std::optional<Permission> remembers;  ///< can't be made to forget this one

    Status status(Permission permission) override {
        const auto answer = answers.find(permission);
        return answer == answers.end() ? Status::notDetermined : answer->second;
    }
    QCoro::Task<> ask(Permission permission) override {
        asked.push_back(permission);
        co_return;
    }
    bool openPane(PrivacyPane pane) override {
        opened.push_back(pane);
        return true;
    }
    QCoro::Task<bool> forget(Permission permission) override { co_return permission != remembers; }
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
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "settings.ini")) << "nobody was asked";
}

TEST_F(Permissions, ALookAtTheScreenIsRememberedAlsoWhereItIsGranted) {
    UnrestrictedDesktop unrestricted;
    PermissionsManager manager(defaults, unrestricted);
    manager.screenWasLookedAt();
    EXPECT_EQ(defaults.boolean("askedScreenRecording"), true);
    EXPECT_TRUE(PermissionsManager(defaults, unrestricted).isGranted(screenRecording));
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

TEST_F(Permissions, EachPaneIsOpenedButForNone) {
    PermissionsManager manager(defaults, desktop);
    for (const PrivacyPane pane : {PrivacyPane::camera, PrivacyPane::microphone, PrivacyPane::screenCapture,
                                   PrivacyPane::accessibility})
        EXPECT_TRUE(manager.openPane(pane));
    EXPECT_FALSE(manager.openPane(PrivacyPane::none));
    EXPECT_EQ(desktop.opened, (std::vector{PrivacyPane::camera, PrivacyPane::microphone,
                                           PrivacyPane::screenCapture, PrivacyPane::accessibility}));
}

TEST_F(Permissions, NobodyIsSentToAPaneThatIsNotThere) {
    UnrestrictedDesktop unrestricted;
    PermissionsManager manager(defaults, unrestricted);
    EXPECT_FALSE(manager.openPane(PrivacyPane::camera));
}

TEST_F(Permissions, AfterAResetScreenAndInputAreOpenAgain) {
    defaults.setBoolean("askedScreenRecording", true);
    defaults.setBoolean("askedAccessibility", true);
    PermissionsManager manager(defaults, desktop);
    EXPECT_EQ(manager.status(screenRecording), Status::denied);
    EXPECT_EQ(manager.status(accessibility), Status::denied);
    EXPECT_TRUE(QCoro::waitFor(manager.resetScreenAndAccessibility()));
    EXPECT_EQ(defaults.boolean("askedScreenRecording"), std::nullopt);
    EXPECT_EQ(defaults.boolean("askedAccessibility"), std::nullopt);
    EXPECT_EQ(manager.status(screenRecording), Status::notDetermined);
    EXPECT_EQ(manager.status(accessibility), Status::notDetermined);
}

TEST_F(Permissions, WhatTheDesktopDoesNotForgetStaysAsItIs) {
    defaults.setBoolean("askedScreenRecording", true);
    defaults.setBoolean("askedAccessibility", true);
    desktop.remembers = screenRecording;
    PermissionsManager manager(defaults, desktop);
    EXPECT_FALSE(QCoro::waitFor(manager.resetScreenAndAccessibility()));
    EXPECT_EQ(defaults.boolean("askedScreenRecording"), true);
    EXPECT_EQ(manager.status(screenRecording), Status::denied);
    EXPECT_EQ(manager.status(accessibility), Status::notDetermined);
}

TEST_F(Permissions, ARelaunchStartsTheProgramAndGoesOnWithTheIntroduction) {
    const auto started = folder.path() / "started";
    const auto program = folder.path() / "program";
    std::ofstream(program) << "#!/bin/sh\ntouch " << started << "\n";
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    PermissionsManager manager(defaults, desktop);
    EXPECT_EQ(manager.relaunch(QString::fromStdString(program)), std::nullopt);
    EXPECT_EQ(defaults.boolean("resumeOnboarding"), true);
    for (int round = 0; round < 1000 && !std::filesystem::exists(started); ++round)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_TRUE(std::filesystem::exists(started));
}

TEST_F(Permissions, AFailedRelaunchSaysWhatToDo) {
    PermissionsManager manager(defaults, desktop);
    const auto failure = manager.relaunch(QString::fromStdString(folder.path() / "nothing"));
    ASSERT_TRUE(failure);
    EXPECT_TRUE(failure->ends_with("\n\nQuit and open it again yourself to finish granting permission."))
        << *failure;
    EXPECT_FALSE(failure->starts_with("\n")) << "the reason is missing";
    EXPECT_EQ(defaults.boolean("resumeOnboarding"), std::nullopt);
}

}  // namespace
}  // namespace tessaloom
