// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11WindowOwner.h"

#include <QCoreApplication>
#include <QString>

namespace tessaloom {
namespace {

/// Some window managers put a window of theirs between their frame and the application's.
constexpr int deepestFrame = 2;

bool hasClass(const X11Connection& connection, xcb_window_t window) {
    return connection.property(window, XCB_ATOM_WM_CLASS).has_value();
}

xcb_window_t applicationWindowIn(const X11Connection& connection, xcb_window_t window, int depth) {
    if (hasClass(connection, window)) return window;
    if (depth == 0) return XCB_NONE;
    for (const xcb_window_t child : childrenOf(connection, window)) {
        const xcb_window_t found = applicationWindowIn(connection, child, depth - 1);
        if (found != XCB_NONE) return found;
    }
    return XCB_NONE;
}

}  // namespace

std::vector<xcb_window_t> childrenOf(const X11Connection& connection, xcb_window_t window) {
    const auto cookie = xcb_query_tree(connection, window);
    const X11Reply<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(connection, cookie, nullptr));
    if (!reply) return {};
    const xcb_window_t* first = xcb_query_tree_children(reply.get());
    return {first, first + xcb_query_tree_children_length(reply.get())};
}

/// Each text is ended by a zero.
std::pair<std::string, std::string> instanceAndClass(const X11Connection& connection, xcb_window_t window) {
    const std::string both = connection.property(window, XCB_ATOM_WM_CLASS).value_or(std::string());
    const std::string instance = both.substr(0, both.find('\0'));
    const std::string rest = instance.size() < both.size() ? both.substr(instance.size() + 1) : std::string();
    return {instance, rest.substr(0, rest.find('\0'))};
}

xcb_window_t applicationWindowIn(const X11Connection& connection, xcb_window_t topLevel) {
    return applicationWindowIn(connection, topLevel, deepestFrame);
}

/// Qt makes the class of its windows from the application's name, with a capital.
bool isOwnClass(const std::string& windowClass) {
    const QString own = QCoreApplication::applicationName();
    return !own.isEmpty() && QString::fromStdString(windowClass).compare(own, Qt::CaseInsensitive) == 0;
}

}  // namespace tessaloom
