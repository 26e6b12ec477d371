// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/TimeLimit.h"
#include "platform/x11/X11Reply.h"

namespace tessaloom {

/// One connection to the X server named by DISPLAY. Each thread that waits for events has its own, so that no
/// thread sees another's events.
class X11Connection {
  public:
    /// How long a server may take to answer before it counts as hung.
    static constexpr std::chrono::seconds answerLimit{4};

    /// Throws CaptureError::noDisplay when no server answers, in time.
    static std::unique_ptr<X11Connection> open();

    operator xcb_connection_t*() const { return connection_.get(); }
    xcb_window_t root() const { return screen_->root; }
    const xcb_screen_t& screen() const { return *screen_; }
    int fileDescriptor() const { return xcb_get_file_descriptor(connection_.get()); }
    bool lost() const { return xcb_connection_has_error(connection_.get()) != 0; }

    X11Reply<xcb_generic_event_t> pollEvent() const {
        return X11Reply<xcb_generic_event_t>(xcb_poll_for_event(connection_.get()));
    }
    /// One that came along with a reply: the socket doesn't tell of it any more.
    X11Reply<xcb_generic_event_t> pollQueuedEvent() const {
        return X11Reply<xcb_generic_event_t>(xcb_poll_for_queued_event(connection_.get()));
    }
    void flush() const { xcb_flush(connection_.get()); }

    /// Ends a wait for the server at once, also one that a hung server would never end, and all use of the
    /// connection. The only operation that another thread may call.
    void hangUp() const;

    /// As long as the limit lives, all waits for the server together last no longer than that: then it hangs
    /// up. The connection must outlive the limit.
    TimeLimit limitWaits() const {
        return {answerLimit, [this] { hangUp(); }};
    }
    /// Throws CaptureError::noDisplay when the connection is lost: answers that didn't come then mean
    /// nothing.
    void requireServer() const;

    /// Throws std::runtime_error "The X server lacks the … extension, …" when it is not there.
    const xcb_query_extension_reply_t& requireExtension(xcb_extension_t* extension, const char* name) const;

    /// 0 when the server doesn't know the name.
    xcb_atom_t atom(std::string_view name) const;

    /// A window property's bytes; nothing when it is absent or the window is gone.
    std::optional<std::string> property(xcb_window_t window, xcb_atom_t name) const;
    std::vector<std::uint32_t> property32(xcb_window_t window, xcb_atom_t name) const;

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    using Handle = std::unique_ptr<xcb_connection_t, Disconnect>;

    X11Connection(Handle connection, const xcb_screen_t* screen)
        : connection_(std::move(connection)), screen_(screen) {}

    Handle connection_;
    const xcb_screen_t* screen_;
};

}  // namespace tessaloom
