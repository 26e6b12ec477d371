// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11ShareableContent.h"

#include <xcb/randr.h>

#include <algorithm>
#include <charconv>

#include "platform/x11/DesktopEntries.h"
#include "platform/x11/ProcessName.h"
#include "platform/x11/X11WindowOwner.h"

namespace tessaloom {
namespace {

constexpr double dotsPerInchOfOnePixelPerPoint = 96.0;

Rect inPoints(int x, int y, int width, int height, double scale) {
    return {x / scale, y / scale, width / scale, height / scale};
}

std::vector<ShareableDisplay> monitors(const X11Connection& connection, double scale) {
    std::vector<ShareableDisplay> displays;
    const auto* extension = xcb_get_extension_data(connection, &xcb_randr_id);
    if (extension == nullptr || extension->present == 0) return displays;
    // The server answers requests of an extension only after its version was asked for.
    const X11Reply<xcb_randr_query_version_reply_t> version(
        xcb_randr_query_version_reply(connection, xcb_randr_query_version(connection, 1, 5), nullptr));
    const auto cookie = xcb_randr_get_monitors(connection, connection.root(), 1);
    const X11Reply<xcb_randr_get_monitors_reply_t> reply(
        xcb_randr_get_monitors_reply(connection, cookie, nullptr));
    if (!reply) return displays;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem > 0;
         xcb_randr_monitor_info_next(&it)) {
        displays.push_back({inPoints(it.data->x, it.data->y, it.data->width, it.data->height, scale),
                            it.data->primary != 0});
    }
    return displays;
}

ShareableDisplay wholeScreen(const X11Connection& connection, double scale) {
    return {inPoints(0, 0, connection.screen().width_in_pixels, connection.screen().height_in_pixels, scale),
            true};
}

/// Bottom to top. The window manager's list holds the applications' own windows; without a window manager
/// these are the root's children.
std::vector<xcb_window_t> stackedWindows(const X11Connection& connection) {
    for (const char* list : {"_NET_CLIENT_LIST_STACKING", "_NET_CLIENT_LIST"}) {
        auto windows = connection.property32(connection.root(), connection.atom(list));
        if (!windows.empty()) return windows;
    }
    return childrenOf(connection, connection.root());
}

/// Mapped, drawn to, and under the window manager's rule: menus and tooltips are not.
bool isOrdinaryAndVisible(const X11Connection& connection, xcb_window_t window) {
    const auto cookie = xcb_get_window_attributes(connection, window);
    const X11Reply<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(connection, cookie, nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE && reply->override_redirect == 0 &&
           reply->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
}

bool isNormalType(const X11Connection& connection, xcb_window_t window) {
    const auto types = connection.property32(window, connection.atom("_NET_WM_WINDOW_TYPE"));
    if (types.empty()) return true;
    return std::ranges::any_of(types, [&](std::uint32_t type) {
        return type == connection.atom("_NET_WM_WINDOW_TYPE_NORMAL") ||
               type == connection.atom("_NET_WM_WINDOW_TYPE_DIALOG");
    });
}

ShareableWindow describe(const X11Connection& connection, xcb_window_t id, const Rect& frame,
                         const std::vector<DesktopEntry>& entries) {
    ShareableWindow window;
    window.id = id;
    window.frame = frame;
    const auto [instance, windowClass] = instanceAndClass(connection, id);
    window.bundleIdentifier = windowClass;
    const auto process = connection.property32(id, connection.atom("_NET_WM_PID"));
    if (const DesktopEntry* entry = entryOfWindowClass(entries, windowClass)) {
        window.applicationName = entry->name;
        window.desktopID = entry->id;
    } else if (!process.empty()) {
        window.applicationName = processName(process.front());
    }
    if (window.applicationName.empty()) window.applicationName = instance;
    window.isOurOwn = isOwnClass(windowClass);
    const auto title = connection.property(id, connection.atom("_NET_WM_NAME"));
    window.title = title ? *title : connection.property(id, XCB_ATOM_WM_NAME).value_or(std::string());
    window.isNormal = isNormalType(connection, id);
    return window;
}

}  // namespace

double pointPixelScale(const X11Connection& connection) {
    static constexpr std::string_view key = "Xft.dpi:";
    const auto resources =
        connection.property(connection.root(), XCB_ATOM_RESOURCE_MANAGER).value_or(std::string());
    std::size_t at = resources.starts_with(key) ? 0 : resources.find("\n" + std::string(key));
    if (at == std::string::npos) return 1.0;
    at = resources.find_first_not_of(" \t", resources.find(':', at) + 1);
    if (at == std::string::npos) return 1.0;
    double dotsPerInch = 0;
    std::from_chars(resources.data() + at, resources.data() + resources.size(), dotsPerInch);
    return dotsPerInch > 0 ? dotsPerInch / dotsPerInchOfOnePixelPerPoint : 1.0;
}

std::optional<Rect> windowFrame(const X11Connection& connection, xcb_window_t window, double scale) {
    const auto geometryCookie = xcb_get_geometry(connection, window);
    const auto positionCookie = xcb_translate_coordinates(connection, window, connection.root(), 0, 0);
    const X11Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, geometryCookie, nullptr));
    const X11Reply<xcb_translate_coordinates_reply_t> position(
        xcb_translate_coordinates_reply(connection, positionCookie, nullptr));
    if (!geometry || !position) return std::nullopt;
    return inPoints(position->dst_x, position->dst_y, geometry->width, geometry->height, scale);
}

ShareableContent readShareableContent(const X11Connection& connection) {
    ShareableContent content;
    content.pointPixelScale = pointPixelScale(connection);
    content.displays = monitors(connection, content.pointPixelScale);
    if (content.displays.empty())
        content.displays.push_back(wholeScreen(connection, content.pointPixelScale));
    const auto entries = readDesktopEntries(desktopEntryFolders());
    auto windows = stackedWindows(connection);
    std::ranges::reverse(windows);
    for (const xcb_window_t window : windows) {
        if (!isOrdinaryAndVisible(connection, window)) continue;
        if (const auto frame = windowFrame(connection, window, content.pointPixelScale)) {
            content.windows.push_back(describe(connection, window, *frame, entries));
        }
    }
    connection.requireServer();
    return content;
}

}  // namespace tessaloom
