// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/ScreenPicture.h"

#include <chrono>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace tessaloom::test {

namespace {

using ImageReply = std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)>;

ImageReply readScreen(const XInjector& injector, int x, int y, int width, int height) {
    xcb_connection_t* const connection = injector.connection();
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto cookie =
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(x),
                      static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), ~0U);
    ImageReply reply(xcb_get_image_reply(connection, cookie, nullptr), std::free);
    if (!reply) throw std::runtime_error("the screen can't be read");
    return reply;
}

std::uint32_t colorOf(const std::uint8_t* pixel) {
    return static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
}

}  // namespace

std::uint32_t screenColorAt(const XInjector& injector, int x, int y) {
    return colorOf(xcb_get_image_data(readScreen(injector, x, y, 1, 1).get()));
}

std::optional<ScreenPoint> placeOfColor(const XInjector& injector, std::uint32_t rgb, std::size_t least) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(injector.connection())).data;
    const int width = screen->width_in_pixels;
    const int height = screen->height_in_pixels;
    const ImageReply picture = readScreen(injector, 0, 0, width, height);
    std::vector<ScreenPoint> places;
    for (int index = 0; index < width * height; ++index) {
        if (colorOf(xcb_get_image_data(picture.get()) + 4 * index) == rgb)
            places.push_back({index % width, index / width});
    }
    if (places.size() < least) return std::nullopt;
    return places[places.size() / 2];
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
