// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QCoroTask>
#include <QObject>
#include <map>
#include <optional>
#include <string>

#include "base/Defaults.h"
#include "capture/PermissionSystem.h"

namespace tessaloom {

/// Whether we may use what belongs to the user, and the order in which to ask for it. It never says whether a
/// device is there: that is found out when the device is opened. Main thread.
///
/// That the desktop has asked about the screen or about input is remembered in the preferences, and judged by
/// their values when this object was made: such a permission comes into force with the next start of the
/// program, so until then the question counts as open.
class PermissionsManager : public QObject {
    Q_OBJECT

  public:
    /// Reads all statuses; `system` must outlive it.
    PermissionsManager(Defaults defaults, PermissionSystem& system);

    PermissionStatus status(Permission permission) const { return statuses_.at(permission); }
    bool isGranted(Permission permission) const { return status(permission) == PermissionStatus::granted; }

    /// None waits for a decision any more.
    bool allSettled() const;
    /// Microphone, camera or speech waits for one.
    bool hasUndecided() const;

    void refresh();

    QCoro::Task<> request(Permission permission);
    /// Asks for the next one that is open: first input, then the screen, then microphone, camera and speech.
    QCoro::Task<> requestNext();

    /// Shows the desktop's settings for a permission; false when there is nothing to show.
    bool openPane(PrivacyPane pane);

    /// Whether permissions would be lost for being run from a temporary place. On no desktop that we run on
    /// does one hang on where the program lies.
    static bool isRunningTranslocated() { return false; }

    /// For when the desktop's record has gone bad: has it forget the permissions for the screen and for
    /// input, which are then open again. True when it has forgotten both.
    QCoro::Task<bool> resetScreenAndAccessibility();

    /// Starts `program` anew in place of this one, since some permissions come into force only then, and has
    /// it go on with the introduction. Returns what went wrong, for the user; nothing when all went well.
    std::optional<std::string> relaunch(const QString& program = QCoreApplication::applicationFilePath());

    /// The first look at what is on the screen makes a desktop ask, where it does so at all.
    void screenWasLookedAt();

  Q_SIGNALS:
    /// After each reading.
    void refreshed();

  private:
    PermissionStatus read(Permission permission);
    QCoro::Task<bool> reset(Permission permission, bool& askedAtLaunch);
    bool wasAsked(Permission permission) const;
    void rememberAsked(Permission permission);

    Defaults defaults_;
    PermissionSystem& system_;
    bool askedScreenAtLaunch_;
    bool askedAccessibilityAtLaunch_;
    std::map<Permission, PermissionStatus> statuses_;
};

}  // namespace tessaloom
