// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "take/OpenTake.h"

namespace tessaloom {

/// What a take's cuts come to, as a JSON object: the trim held within the recording, the ranges that are kept
/// and playable, the blocks of the timeline, and how long the result is. A number that is not finite is null.
std::string cutFacts(const OpenTake& take);

}  // namespace tessaloom
