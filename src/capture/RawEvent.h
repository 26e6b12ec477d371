// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "capture/InputSources.h"

namespace tessaloom {

/// A press as far as it is kept: what a key typed is forgotten, only its label stays, which plain typing has
/// none of (keyLabel).
struct RawEvent {
    double host = 0;  ///< HostClock seconds
    RawInput::Kind kind = RawInput::Kind::key;
    std::string label;
};

}  // namespace tessaloom
