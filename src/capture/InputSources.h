// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "capture/ClickCounter.h"
#include "core/Geometry.h"

namespace tessaloom {

/// Where the pointer is.
class PointerSource {
  public:
    virtual ~PointerSource() = default;
    /// Global points; nothing when the desktop doesn't say. Called from one thread at a time.
    virtual std::optional<Point> location() = 0;
    /// A location() that waits for the desktop ends at once, and later ones answer nothing. Any thread.
    virtual void stop() = 0;
};

/// The modifiers held at a key press, as the keyboard's layout resolves them. AltGr counts as none of them.
struct KeyModifiers {
    bool control = false;
    bool alt = false;
    bool shift = false;
    bool super = false;

    bool operator==(const KeyModifiers&) const = default;
};

/// One press, as the input devices report it.
struct RawInput {
    enum class Kind { leftButton, rightButton, key, scroll };

    double hostTime = 0;  ///< HostClock seconds
    Kind kind = Kind::key;
    std::string keyName;  ///< XKB name of the key's physical position ("AD01"); keys only
    KeyModifiers modifiers;
};

/// Every press of buttons, keys and the wheel on the desktop, whichever window has the focus. It only
/// listens.
class InputEventSource {
  public:
    using Handler = std::function<void(const RawInput&)>;

    virtual ~InputEventSource() = default;
    /// The handler runs on the source's own thread. Throws std::runtime_error when the desktop refuses.
    virtual void start(Handler handler) = 0;
    /// What the user has set, as it was at the start.
    virtual ClickLimits clickLimits() const { return {}; }
    /// The handler doesn't run after it returns. Safe to call at any time.
    virtual void stop() = 0;
};

}  // namespace tessaloom
