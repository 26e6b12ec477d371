// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/StoredPicture.h"

#include <algorithm>
#include <cstdlib>

#include "render/PictureFile.h"
#include "support/PictureFiles.h"
#include "support/PixelAt.h"

namespace tessaloom::test {
namespace {

/// Makes small differences visible.
constexpr int exaggeration = 8;

void leaveDifference(const BgraImage& actual, const BgraImage& expected, const std::string& name) {
    BgraImage apart(actual.width(), actual.height());
    for (int y = 0; y < actual.height(); ++y) {
        for (int i = 0; i < actual.width() * 4; ++i) {
            const int off = std::abs(actual.row(y)[i] - expected.row(y)[i]);
            apart.row(y)[i] = static_cast<std::uint8_t>(std::min(exaggeration * off, 255));
        }
    }
    writePicture(apart.view(), name);
}

bool sameSize(const BgraImage& a, const BgraImage& b) {
    return a.width() == b.width() && a.height() == b.height();
}

}  // namespace

BgraImage storedPicture(const std::string& name) {
    auto picture = readPictureFile(std::filesystem::path(STORED_PICTURES_FOLDER) / (name + ".png"));
    return picture ? std::move(*picture) : BgraImage();
}

::testing::AssertionResult isLike(const BgraImage& actual, const BgraImage& expected,
                                  const Tolerance& tolerance) {
    if (!sameSize(actual, expected)) {
        return ::testing::AssertionFailure()
               << actual.width() << " x " << actual.height() << " pixels instead of " << expected.width()
               << " x " << expected.height();
    }
    double sum = 0;
    double outliers = 0;
    for (int y = 0; y < actual.height(); ++y) {
        for (int x = 0; x < actual.width(); ++x) {
            int worst = 0;
            for (int channel = 0; channel < 3; ++channel) {
                const int off = std::abs(pixelAt(actual, x, y)[channel] - pixelAt(expected, x, y)[channel]);
                sum += off;
                worst = std::max(worst, off);
            }
            if (worst > tolerance.step) ++outliers;
        }
    }
    const double pixels = static_cast<double>(actual.width()) * actual.height();
    const auto result = sum / (3 * pixels) <= tolerance.mean && outliers / pixels <= tolerance.outliers
                            ? ::testing::AssertionSuccess()
                            : ::testing::AssertionFailure();
    return ::testing::AssertionResult(result)
           << "mean difference " << sum / (3 * pixels) << ", " << 100 * outliers / pixels
           << " % of the pixels are off by more than " << tolerance.step;
}

::testing::AssertionResult isLikeStored(const BgraImage& actual, const std::string& name,
                                        const std::string& by, const Tolerance& tolerance) {
    const BgraImage expected = storedPicture(name);
    const auto result = isLike(actual, expected, tolerance);
    if (result) return result;
    const std::string prefix = name + "-" + by;
    writePicture(actual.view(), prefix + "-actual");
    if (!expected.empty()) writePicture(expected.view(), prefix + "-expected");
    if (sameSize(actual, expected)) leaveDifference(actual, expected, prefix + "-difference");
    return ::testing::AssertionFailure() << prefix << ": " << result.message();
}

}  // namespace tessaloom::test
