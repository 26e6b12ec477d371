// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace tessaloom {

/// Whether we may use what belongs to the user. It never says whether a device is there: that is found out
/// when the device is opened. Main thread.
class PermissionsManager {
  public:
    enum class Status { unknown, granted, denied, notDetermined };

    struct Statuses {
        Status microphone = Status::unknown;
        Status camera = Status::unknown;
    };

    /// Asks `read` at every refresh(), of which this is the first.
    explicit PermissionsManager(std::function<Statuses()> read);

    /// For a program that runs as its user does: the system has nothing to ask, and everything is granted.
    static PermissionsManager unrestricted();

    void refresh();

    Status microphone() const { return statuses_.microphone; }
    Status camera() const { return statuses_.camera; }

  private:
    std::function<Statuses()> read_;
    Statuses statuses_;
};

}  // namespace tessaloom
