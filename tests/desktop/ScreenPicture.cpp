// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/ScreenPicture.h"

#include <chrono>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <thread>

namespace tessaloom::test {

std::uint32_t screenColorAt(const XInjector& injector, int x, int y) {
    xcb_connection_t* const connection = injector.connection();
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root,
                                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
        xcb_get_image_reply(connection, cookie, nullptr), std::free);
    if (!reply) throw std::runtime_error("the screen can't be read");
    const std::uint8_t* pixel = xcb_get_image_data(reply.get());
    return static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
}

bool waitUntil(const std::function<bool()>& condition) {
    using namespace std::chrono_literals;
    for (int round = 0; round < 1000; ++round) {
        if (condition()) return true;
        std::this_thread::sleep_for(10ms);
    }
    return false;
}

}  // namespace tessaloom::test
