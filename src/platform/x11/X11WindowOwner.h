// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/x11/X11Connection.h"

namespace tessaloom {

std::vector<xcb_window_t> childrenOf(const X11Connection& connection, xcb_window_t window);

/// The two texts of WM_CLASS, the instance's name and the class; empty when there are none.
std::pair<std::string, std::string> instanceAndClass(const X11Connection& connection, xcb_window_t window);

/// The application's window in the one that is a child of the root: itself, or what a window manager put
/// inside it; none when that has no class.
xcb_window_t applicationWindowIn(const X11Connection& connection, xcb_window_t topLevel);

/// Whether windows of this class are this program's, of whichever process of it. Process numbers wouldn't
/// tell: each container counts its own.
bool isOwnClass(const std::string& windowClass);

}  // namespace tessaloom
