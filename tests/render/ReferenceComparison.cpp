// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ReferenceComparison.h"

#include <algorithm>
#include <cmath>

#include "support/PictureFiles.h"
#include "support/PixelAt.h"

namespace tessaloom::test {
namespace {

constexpr double largestMean = 0.6;
constexpr double largestDifference = 3;
/// Makes small differences visible.
constexpr double exaggeration = 40;

struct Difference {
    double mean = 0;
    double worst = 0;
    int worstX = 0;
    int worstY = 0;
    bool opaque = true;
};

std::uint8_t toByte(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

Difference difference(const BgraImage& actual, const ReferenceCanvas& expected) {
    Difference result;
    double sum = 0;
    for (int y = 0; y < actual.height(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            const std::uint8_t* pixel = pixelAt(actual, x, y);
            result.opaque = result.opaque && pixel[3] == 255;
            if (expected.onHardEdge[expected.index(x, y)]) continue;
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const double off = std::abs(pixel[channel] - expected.at(x, y)[channel]);
                sum += off;
                if (!(off <= result.worst)) result = {0, off, x, y, result.opaque};
            }
        }
    }
    result.mean = sum / (3.0 * actual.width() * actual.height());
    return result;
}

void leavePictures(const BgraImage& actual, const ReferenceCanvas& expected, const std::string& name) {
    BgraImage wanted(actual.width(), actual.height());
    BgraImage apart(actual.width(), actual.height());
    for (int y = 0; y < actual.height(); ++y) {
        for (int i = 0; i < actual.width() * 4; ++i) {
            const double value = expected.at(i / 4, y)[static_cast<std::size_t>(i % 4)];
            wanted.row(y)[i] = toByte(value);
            apart.row(y)[i] = toByte(std::abs(actual.row(y)[i] - value) * exaggeration);
        }
    }
    writePicture(actual.view(), name + "-actual");
    writePicture(wanted.view(), name + "-expected");
    writePicture(apart.view(), name + "-difference");
}

}  // namespace

::testing::AssertionResult matchesReference(const BgraImage& actual, const ReferenceCanvas& expected,
                                            const std::string& name) {
    const Difference found = difference(actual, expected);
    if (found.opaque && found.mean < largestMean && found.worst <= largestDifference) {
        return ::testing::AssertionSuccess();
    }
    leavePictures(actual, expected, name);
    return ::testing::AssertionFailure()
           << name << ": mean difference " << found.mean << ", worst " << found.worst << " at "
           << found.worstX << ", " << found.worstY << (found.opaque ? "" : ", not opaque");
}

}  // namespace tessaloom::test
