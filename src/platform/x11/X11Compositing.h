// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/x11/X11Connection.h"

namespace tessaloom {

/// Whether a compositing manager runs, and makes use of windows' alpha.
bool isComposited(const X11Connection& connection);

}  // namespace tessaloom
