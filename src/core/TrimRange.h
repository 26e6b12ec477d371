// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace tessaloom {

/// The stretch of the source that is kept, in source seconds. No `end` means the end of the recording.
struct TrimRange {
    double start = 0;
    std::optional<double> end;

    bool operator==(const TrimRange&) const = default;
};

}  // namespace tessaloom
