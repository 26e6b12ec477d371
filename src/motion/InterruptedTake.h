// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/TakeBundle.h"

namespace tessaloom {

/// Completes a take whose recorder died: its journal becomes the stored log, the zooms generated from it go
/// into the edit, and the journal is removed. Does nothing for a take that is complete or still being
/// recorded. Throws std::system_error.
void finishInterruptedTake(const TakeBundle& bundle);

}  // namespace tessaloom
