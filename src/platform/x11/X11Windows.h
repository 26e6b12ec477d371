// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tessaloom {

/// Qt then takes the X server of its windows for gone, and leaves. Without effect where it shows none. Any
/// thread.
void hangUpWindows();

}  // namespace tessaloom
