// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "core/RelativeRect.h"
#include "core/ZoomKeyframe.h"

namespace tessaloom::test {

/// The plain, slow reading of the rule: a search through the list for each sample, and each one stored.
struct DenseZoomTable {
    std::vector<RelativeRect> samples;

    static RelativeRect curve(const std::vector<ZoomKeyframe>& keyframes, double time);
    /// One step of the filter.
    static RelativeRect filtered(const RelativeRect& previous, const RelativeRect& raw);
    static DenseZoomTable over(const std::vector<ZoomKeyframe>& keyframes, double duration);

    RelativeRect rect(double time) const;
};

}  // namespace tessaloom::test
