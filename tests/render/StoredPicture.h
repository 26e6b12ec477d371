// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "media/BgraImage.h"

namespace tessaloom::test {

/// How far a picture may be from a stored one, in 8-bit steps of a colour.
struct Tolerance {
    /// On average over all colours of all pixels.
    double mean = 0;
    /// A pixel is an outlier where one of its colours is further off than this,
    double step = 0;
    /// and this part of all pixels may be.
    double outliers = 0;
};

/// The picture tests/render/pictures/NAME.png; empty when there is none.
BgraImage storedPicture(const std::string& name);

/// Compares two pictures of any sizes.
::testing::AssertionResult isLike(const BgraImage& actual, const BgraImage& expected,
                                  const Tolerance& tolerance);

/// Compares with the stored picture NAME. Otherwise leaves NAME-BY-actual.png, -expected and -difference in
/// tests/output, where tools/approve-pictures finds them.
::testing::AssertionResult isLikeStored(const BgraImage& actual, const std::string& name,
                                        const std::string& by, const Tolerance& tolerance);

}  // namespace tessaloom::test
