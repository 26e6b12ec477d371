// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/shm.h>

#include <cstddef>
#include <cstdint>

#include "media/PixelRect.h"
#include "platform/x11/X11Connection.h"

namespace tessaloom {

/// Memory shared with the X server, into which it copies pixels. The kernel frees it when both sides are
/// gone, however they end.
class X11ShmSegment {
  public:
    /// Throws std::system_error when the system has no shared memory left, std::runtime_error when the server
    /// can't attach it (a server on another machine).
    X11ShmSegment(const X11Connection& connection, std::size_t size);
    ~X11ShmSegment();
    X11ShmSegment(const X11ShmSegment&) = delete;
    X11ShmSegment& operator=(const X11ShmSegment&) = delete;

    xcb_shm_seg_t id() const { return id_; }
    std::uint8_t* data() const { return data_; }
    std::size_t size() const { return size_; }

    /// Has the server write pixels from this place of a drawable at `offset`, four bytes each, rows without
    /// gaps. They are there when the answer is.
    xcb_shm_get_image_cookie_t requestImage(xcb_drawable_t drawable, const PixelRect& place,
                                            std::size_t offset) const;

  private:
    const X11Connection& connection_;
    std::size_t size_;
    std::uint8_t* data_ = nullptr;
    xcb_shm_seg_t id_ = 0;
};

}  // namespace tessaloom
