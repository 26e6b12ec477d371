// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <optional>

namespace tessaloom {

/// The repeats of a held key. Raw key events come once per press, so the repeats that applications see are
/// counted out here, at the server's own rate. Times are HostClock seconds.
class X11KeyRepeat {
  public:
    void press(xcb_keycode_t key, double time, double delay, double interval);
    void release(xcb_keycode_t key);

    /// When the next repeat is due; nothing when no key is held.
    std::optional<double> nextTime() const;
    /// The key and time of the next repeat if it is due by `now`, moving on to the one after it.
    struct Repeat {
        xcb_keycode_t key;
        double time;
    };
    std::optional<Repeat> takeDue(double now);

  private:
    std::optional<Repeat> next_;
    double interval_ = 0;
};

}  // namespace tessaloom
