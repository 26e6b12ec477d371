// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>

namespace tessaloom {

enum class PermissionStatus { unknown, granted, denied, notDetermined };

enum class Permission { screenRecording, microphone, camera, accessibility, speech };

/// What a desktop lets its programs do, and the way to ask it for more. Main thread.
class PermissionSystem {
  public:
    virtual ~PermissionSystem() = default;

    /// Without asking anyone. For the screen and for input a desktop may not tell a refusal from a question
    /// never asked; it then says `notDetermined`.
    virtual PermissionStatus status(Permission permission) = 0;

    /// Lets the desktop ask the user, in front of everything else, and suspends until it has.
    virtual QCoro::Task<> ask(Permission permission) = 0;
};

/// A desktop on which a program may do what its user may: there is nothing to ask.
class UnrestrictedDesktop final : public PermissionSystem {
  public:
    PermissionStatus status(Permission) override { return PermissionStatus::granted; }
    QCoro::Task<> ask(Permission) override { co_return; }
};

}  // namespace tessaloom
