// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>

namespace tessaloom {

enum class PermissionStatus { unknown, granted, denied, notDetermined };

enum class Permission { screenRecording, microphone, camera, accessibility, speech };

/// A page of the desktop's settings on which a permission can be given or taken away.
enum class PrivacyPane { camera, microphone, screenCapture, accessibility, none };

/// What a desktop lets its programs do, and the way to ask it for more. Main thread.
class PermissionSystem {
  public:
    virtual ~PermissionSystem() = default;

    /// Without asking anyone. For the screen and for input a desktop may not tell a refusal from a question
    /// never asked; it then says `notDetermined`.
    virtual PermissionStatus status(Permission permission) = 0;

    /// Lets the desktop ask the user, in front of everything else, and suspends until it has.
    virtual QCoro::Task<> ask(Permission permission) = 0;

    /// False where the desktop has no such page, so that nobody is sent there.
    virtual bool openPane(PrivacyPane) { return false; }

    /// Makes the desktop forget what the user has answered, where it keeps that: it will then ask again. True
    /// when nothing is kept any more.
    virtual QCoro::Task<bool> forget(Permission) { co_return true; }
};

/// A desktop on which a program may do what its user may: there is nothing to ask.
class UnrestrictedDesktop final : public PermissionSystem {
  public:
    PermissionStatus status(Permission) override { return PermissionStatus::granted; }
    QCoro::Task<> ask(Permission) override { co_return; }
};

}  // namespace tessaloom
