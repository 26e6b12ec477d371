// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xinput.h>

#include <array>
#include <memory>
#include <optional>
#include <thread>

#include "capture/InputSources.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11KeyRepeat.h"
#include "platform/x11/X11Keyboard.h"

namespace tessaloom {

/// XInput2 raw events of all master devices: they arrive whichever window has the focus and whoever grabs
/// input, and they can't be changed or held back from here.
class X11InputSource final : public InputEventSource {
  public:
    explicit X11InputSource(std::unique_ptr<X11Connection> connection);
    ~X11InputSource() override;
    X11InputSource(const X11InputSource&) = delete;
    X11InputSource& operator=(const X11InputSource&) = delete;

    void start(Handler handler) override;
    ClickLimits clickLimits() const override { return clickLimits_; }
    void stop() override;

  private:
    void selectRawEvents() const;
    void readPointerMapping();
    void run(const std::stop_token& stop);
    void waitForInput() const;
    void handle(const xcb_generic_event_t& event);
    void handleRaw(const xcb_input_raw_button_press_event_t& event, std::uint16_t type);
    void handleButton(std::uint32_t physicalButton, double hostTime);
    void handleKeyPress(xcb_keycode_t key, double hostTime);
    void reportKey(xcb_keycode_t key, double hostTime);
    void deliverRepeats();

    std::unique_ptr<X11Connection> connection_;
    std::uint8_t inputExtension_ = 0;
    std::optional<X11Keyboard> keyboard_;  ///< from the start on
    X11KeyRepeat repeat_;
    std::array<std::uint8_t, 256> logicalButton_{};  ///< by physical number; left-handed users swap them
    ClickLimits clickLimits_;
    Handler handler_;
    std::jthread thread_;
};

}  // namespace tessaloom
