// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "capture/InputSources.h"

namespace tessaloom {

/// The label of a key press as it is stored and shown, e.g. "⇧⌘4". Keys are known by physical position, so
/// the same key shows the same label on every layout.
///
/// The privacy line of a recording runs here: a press without control, alt or super gives no label unless the
/// key types no character (Return, arrows, F keys), so typed text, shifted or with AltGr, leaves no trace.
std::string keyLabel(std::string_view keyName, const KeyModifiers& modifiers);

}  // namespace tessaloom
