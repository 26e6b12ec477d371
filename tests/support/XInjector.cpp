// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/XInjector.h"

#include <xcb/xtest.h>

#include <cstdlib>
#include <stdexcept>

namespace tessaloom::test {
namespace {

template <typename Reply>
struct FreeReply {
    void operator()(Reply* reply) const { std::free(reply); }  // NOLINT(cppcoreguidelines-owning-memory)
};

template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeReply<Reply>>;

}  // namespace

XInjector::XInjector(const std::string& displayName)
    : connection_(xcb_connect(displayName.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_.get()) != 0) {
        throw std::runtime_error("The display " + displayName + " can't be reached");
    }
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection_.get(), &xcb_test_id);
    if (extension == nullptr || extension->present == 0) {
        throw std::runtime_error("The X server of " + displayName + " has no XTEST extension");
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
}

// Never a warp: that moves the pointer without the raw motion event a mouse causes.
void XInjector::moveTo(ScreenPoint point) {
    send(XCB_MOTION_NOTIFY, 0, point);
}

ScreenPoint XInjector::pointer() const {
    const ReplyPointer<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(connection_.get(), xcb_query_pointer(connection_.get(), root_), nullptr));
    if (!reply) throw std::runtime_error("The X server has gone");
    return {reply->root_x, reply->root_y};
}

void XInjector::press(int button) {
    send(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button));
}

void XInjector::release(int button) {
    send(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
}

void XInjector::click(int button) {
    press(button);
    release(button);
}

void XInjector::pressKey(xcb_keycode_t keycode) {
    send(XCB_KEY_PRESS, keycode);
}

void XInjector::releaseKey(xcb_keycode_t keycode) {
    send(XCB_KEY_RELEASE, keycode);
}

void XInjector::tapKey(xcb_keycode_t keycode) {
    pressKey(keycode);
    releaseKey(keycode);
}

void XInjector::tapKey(const std::string& symbolName) {
    const auto stroke = keyboard().forSymbolName(symbolName);
    if (!stroke) throw std::invalid_argument("The layout has no key " + symbolName);
    tapKey(stroke->keycode);
}

void XInjector::send(std::uint8_t type, std::uint8_t detail, ScreenPoint point) {
    xcb_test_fake_input(connection_.get(), type, detail, XCB_CURRENT_TIME, root_,
                        static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y), 0);
    synchronize(connection_.get());
}

void synchronize(xcb_connection_t* connection) {
    // Any request with an answer will do: requests of one client are carried out in order.
    const ReplyPointer<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

bool setKeyboardLayout(const Environment& environment, const std::string& layout,
                       const std::string& variant) {
    ChildProcess change({"setxkbmap", "-layout", layout, "-variant", variant}, environment);
    return change.waitForExit(std::chrono::seconds(10)) == 0;
}

}  // namespace tessaloom::test
