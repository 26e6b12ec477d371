// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11ShmSegment.h"

#include <sys/ipc.h>
#include <sys/shm.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace tessaloom {

X11ShmSegment::X11ShmSegment(const X11Connection& connection, std::size_t size)
    : connection_(connection), size_(size) {
    const int identifier = shmget(IPC_PRIVATE, size, IPC_CREAT | 0600);
    if (identifier < 0)
        throw std::system_error(errno, std::generic_category(), "No shared memory for the screen");
    void* memory = shmat(identifier, nullptr, 0);
    const int attachError = errno;
    const bool attached = reinterpret_cast<std::intptr_t>(memory) != -1;
    id_ = xcb_generate_id(connection_);
    const X11Reply<xcb_generic_error_t> refusal(
        attached
            ? xcb_request_check(connection_, xcb_shm_attach_checked(
                                                 connection_, id_, static_cast<std::uint32_t>(identifier), 0))
            : nullptr);
    // Marked for removal at once: it lives on while we or the server hold it, and no longer.
    shmctl(identifier, IPC_RMID, nullptr);
    if (!attached) {
        throw std::system_error(attachError, std::generic_category(), "No shared memory for the screen");
    }
    if (refusal) {
        shmdt(memory);
        throw std::runtime_error(
            "The X server can't share memory with this program; recording needs a local one.");
    }
    data_ = static_cast<std::uint8_t*>(memory);
}

xcb_shm_get_image_cookie_t X11ShmSegment::requestImage(xcb_drawable_t drawable, const PixelRect& place,
                                                       std::size_t offset) const {
    return xcb_shm_get_image(connection_, drawable, static_cast<std::int16_t>(place.x),
                             static_cast<std::int16_t>(place.y), static_cast<std::uint16_t>(place.width),
                             static_cast<std::uint16_t>(place.height), ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, id_,
                             static_cast<std::uint32_t>(offset));
}

X11ShmSegment::~X11ShmSegment() {
    xcb_shm_detach(connection_, id_);
    connection_.flush();
    shmdt(data_);
}

}  // namespace tessaloom
