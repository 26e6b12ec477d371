// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

namespace tessaloom {

/// The output picture in whole, even pixels, at least 2 each way.
struct CanvasSize {
    int width = 2;
    int height = 2;

    /// A canvas of the shape `aspect` (width over height) whose long edge is the recording's, or
    /// `longEdgeLimit` where that is smaller: an export never scales up.
    static CanvasSize fitting(int naturalWidth, int naturalHeight, double aspect,
                              std::optional<int> longEdgeLimit);

    bool operator==(const CanvasSize&) const = default;
};

}  // namespace tessaloom
