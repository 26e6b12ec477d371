// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11KeyRepeat.h"

namespace tessaloom {

void X11KeyRepeat::press(xcb_keycode_t key, double time, double delay, double interval) {
    next_ = Repeat{key, time + delay};
    interval_ = interval;
}

void X11KeyRepeat::release(xcb_keycode_t key) {
    if (next_ && next_->key == key) next_.reset();
}

std::optional<double> X11KeyRepeat::nextTime() const {
    if (!next_) return std::nullopt;
    return next_->time;
}

std::optional<X11KeyRepeat::Repeat> X11KeyRepeat::takeDue(double now) {
    if (!next_ || next_->time > now) return std::nullopt;
    const Repeat due = *next_;
    next_->time += interval_;
    return due;
}

}  // namespace tessaloom
