// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/RoundedBox.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {
namespace {

double fourthPower(double value) {
    return value * value * value * value;
}

// The furthest pixel from `inside` towards `end` for which `holds`, when it holds up to some pixel and not
// after.
template <class Predicate>
int furthestWhere(int inside, int end, Predicate holds) {
    while (inside != end) {
        const int towardsEnd = end > inside ? 1 : -1;
        const int middle = inside + (end - inside + towardsEnd) / 2;
        if (holds(middle)) {
            inside = middle;
        } else {
            end = middle - towardsEnd;
        }
    }
    return inside;
}

}  // namespace

double RoundedBox::distance(double x, double y) const {
    const double qx = std::abs(x - rect.midX()) - (rect.width * 0.5 - corner);
    const double qy = std::abs(y - rect.midY()) - (rect.height * 0.5 - corner);
    const double sum = fourthPower(std::max(qx, 0.0)) + fourthPower(std::max(qy, 0.0));
    return std::sqrt(std::sqrt(sum)) + std::min(std::max(qx, qy), 0.0) - corner;
}

PixelSpan RoundedBox::rowSpan(int y, double limit, int width) const {
    const auto within = [&](int x) { return distance(x + 0.5, y + 0.5) <= limit; };
    const int middle = static_cast<int>(std::clamp(std::floor(rect.midX()), 0.0, width - 1.0));
    if (!within(middle)) return {};
    return {furthestWhere(middle, 0, within), furthestWhere(middle, width - 1, within) + 1};
}

double hermiteStep(double edge0, double edge1, double x) {
    const double t = std::clamp((x - edge0) / (edge1 - edge0), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

}  // namespace tessaloom
