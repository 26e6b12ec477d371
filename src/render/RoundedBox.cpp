// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/RoundedBox.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {
namespace {

double fourthPower(double value) {
    return value * value * value * value;
}

}  // namespace

double RoundedBox::distance(double x, double y) const {
    const double qx = std::abs(x - rect.midX()) - (rect.width * 0.5 - corner);
    const double qy = std::abs(y - rect.midY()) - (rect.height * 0.5 - corner);
    const double sum = fourthPower(std::max(qx, 0.0)) + fourthPower(std::max(qy, 0.0));
    return std::sqrt(std::sqrt(sum)) + std::min(std::max(qx, qy), 0.0) - corner;
}

PixelSpan RoundedBox::rowSpan(int y, double limit, int width) const {
    return spanAround(rect.midX(), width, [&](int x) { return distance(x + 0.5, y + 0.5) <= limit; });
}

double hermiteStep(double edge0, double edge1, double x) {
    const double t = std::clamp((x - edge0) / (edge1 - edge0), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

}  // namespace tessaloom
