// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11Connection.h"

#include <sys/socket.h>

#include <cstring>
#include <future>
#include <stdexcept>
#include <thread>
#include <utility>

#include "capture/CaptureError.h"

namespace tessaloom {
namespace {

constexpr const char* advice = "Run this inside an X11 session, or set DISPLAY to one.";
constexpr const char* serverHangs = "The X server doesn't answer; wait until it does, or start it anew.";
constexpr std::uint32_t longestPropertyInWords = 1U << 16;

const xcb_screen_t* screenNumber(const xcb_setup_t* setup, int number) {
    auto screens = xcb_setup_roots_iterator(setup);
    for (; screens.rem > 1 && number > 0; --number)
        xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data : nullptr;
}

}  // namespace

std::unique_ptr<X11Connection> X11Connection::open() {
    // A server that hangs takes the connection, but never greets: that wait is left alone.
    std::packaged_task<std::pair<Handle, int>()> connect([] {
        int number = 0;
        Handle connection(xcb_connect(nullptr, &number));
        return std::pair(std::move(connection), number);
    });
    auto greeting = connect.get_future();
    std::thread(std::move(connect)).detach();
    if (greeting.wait_for(answerLimit) != std::future_status::ready)
        throw CaptureError::noDisplay(serverHangs);
    auto [connection, number] = greeting.get();
    if (xcb_connection_has_error(connection.get()) != 0) throw CaptureError::noDisplay(advice);
    const xcb_screen_t* screen = screenNumber(xcb_get_setup(connection.get()), number);
    if (screen == nullptr) throw CaptureError::noDisplay(advice);
    return std::unique_ptr<X11Connection>(new X11Connection(std::move(connection), screen));
}

void X11Connection::requireServer() const {
    if (lost()) throw CaptureError::noDisplay(serverHangs);
}

void X11Connection::hangUp() const {
    // Only the reading side: a write under way must not meet a broken pipe.
    shutdown(fileDescriptor(), SHUT_RD);
}

const xcb_query_extension_reply_t& X11Connection::requireExtension(xcb_extension_t* extension,
                                                                   const char* name) const {
    const auto* reply = xcb_get_extension_data(connection_.get(), extension);
    requireServer();
    if (reply == nullptr || reply->present == 0) {
        throw std::runtime_error(std::string("The X server lacks the ") + name +
                                 " extension, which recording needs.");
    }
    return *reply;
}

xcb_atom_t X11Connection::atom(std::string_view name) const {
    const auto cookie =
        xcb_intern_atom(connection_.get(), 1, static_cast<std::uint16_t>(name.size()), name.data());
    const X11Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_.get(), cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::optional<std::string> X11Connection::property(xcb_window_t window, xcb_atom_t name) const {
    if (name == XCB_ATOM_NONE) return std::nullopt;
    const auto cookie = xcb_get_property(connection_.get(), 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0,
                                         longestPropertyInWords);
    const X11Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_.get(), cookie, nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE) return std::nullopt;
    return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                       static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

std::vector<std::uint32_t> X11Connection::property32(xcb_window_t window, xcb_atom_t name) const {
    const auto bytes = property(window, name).value_or(std::string());
    std::vector<std::uint32_t> values(bytes.size() / sizeof(std::uint32_t));
    if (!values.empty()) std::memcpy(values.data(), bytes.data(), values.size() * sizeof(std::uint32_t));
    return values;
}

}  // namespace tessaloom
