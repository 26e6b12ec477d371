// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "support/ChildProcess.h"
#include "support/KeyboardMap.h"

namespace tessaloom::test {

struct ScreenPoint {
    int x = 0;
    int y = 0;
};

/// Sends input to an X server as hardware would: listeners to raw events see it. Every call returns when the
/// server has taken the event in. Buttons count from 1 (left, middle, right); 4 to 7 are wheel notches.
/// For use on one thread.
class XInjector {
  public:
    /// Throws std::runtime_error when `displayName` can't be reached or its server has no XTEST extension.
    explicit XInjector(const std::string& displayName);

    void moveTo(ScreenPoint point);
    ScreenPoint pointer() const;

    void press(int button);
    void release(int button);
    void click(int button = 1);

    void pressKey(xcb_keycode_t keycode);
    void releaseKey(xcb_keycode_t keycode);
    void tapKey(xcb_keycode_t keycode);

    /// Key names as in KeyboardMap::forSymbolName; throws std::invalid_argument for one the layout lacks.
    void tapKey(const std::string& symbolName);

    /// The layout as the server has it now.
    KeyboardMap keyboard() const { return KeyboardMap::read(connection_.get()); }

    xcb_connection_t* connection() const { return connection_.get(); }

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    void send(std::uint8_t type, std::uint8_t detail, ScreenPoint point = {});

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
};

/// Waits until the server has carried out all that was sent on `connection`.
void synchronize(xcb_connection_t* connection);

/// Changes the layout of a display, as {"de"} or {"us", "dvorak"}; false when that failed.
bool setKeyboardLayout(const Environment& environment, const std::string& layout,
                       const std::string& variant = {});

}  // namespace tessaloom::test
