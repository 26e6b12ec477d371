// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TestWindow.h"

#include <array>
#include <cstdlib>
#include <stdexcept>

#include "support/XInjector.h"

namespace tessaloom::test {
namespace {

void setText(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
             const std::string& text) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

xcb_rectangle_t serverRect(PixelRect rect) {
    return {static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
            static_cast<std::uint16_t>(rect.width), static_cast<std::uint16_t>(rect.height)};
}

}  // namespace

TestWindow::TestWindow(xcb_connection_t* connection, const WindowDescription& description)
    : connection_(connection), id_(xcb_generate_id(connection)), context_(xcb_generate_id(connection)) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const std::array<std::uint32_t, 2> values{description.rgb,
                                              description.kind == WindowKind::Unmanaged ? 1U : 0U};
    const xcb_rectangle_t rect = serverRect(description.rect);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, id_, screen->root, rect.x, rect.y, rect.width,
                      rect.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    xcb_create_gc(connection, context_, id_, 0, nullptr);
    setText(connection, id_, XCB_ATOM_WM_NAME, description.title);
    const std::string terminated = description.applicationName + '\0';
    setText(connection, id_, XCB_ATOM_WM_CLASS, terminated + terminated);
    if (description.isMapped) map();
}

TestWindow::~TestWindow() {
    xcb_free_gc(connection_, context_);
    xcb_destroy_window(connection_, id_);
    synchronize(connection_);
}

void TestWindow::fill(PixelRect rect, std::uint32_t rgb) {
    const xcb_rectangle_t area = serverRect(rect);
    xcb_change_gc(connection_, context_, XCB_GC_FOREGROUND, &rgb);
    xcb_poly_fill_rectangle(connection_, id_, context_, 1, &area);
    synchronize(connection_);
}

void TestWindow::moveResize(PixelRect rect) {
    const std::array<std::uint32_t, 4> values{
        static_cast<std::uint32_t>(rect.x), static_cast<std::uint32_t>(rect.y),
        static_cast<std::uint32_t>(rect.width), static_cast<std::uint32_t>(rect.height)};
    xcb_configure_window(
        connection_, id_,
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
        values.data());
    synchronize(connection_);
}

void TestWindow::raise() {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_, id_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    synchronize(connection_);
}

void TestWindow::map() {
    xcb_map_window(connection_, id_);
    synchronize(connection_);
}

void TestWindow::unmap() {
    xcb_unmap_window(connection_, id_);
    synchronize(connection_);
}

xcb_atom_t atomNamed(xcb_connection_t* connection, const std::string& name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    if (reply == nullptr) throw std::runtime_error("The X server has gone");
    const xcb_atom_t atom = reply->atom;
    std::free(reply);  // NOLINT(cppcoreguidelines-owning-memory)
    return atom;
}

void setNumber(xcb_connection_t* connection, xcb_window_t window, const std::string& property,
               xcb_atom_t type, std::uint32_t value) {
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atomNamed(connection, property), type, 32,
                        1, &value);
    synchronize(connection);
}

}  // namespace tessaloom::test
