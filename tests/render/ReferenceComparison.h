// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "media/BgraImage.h"
#include "render/ReferenceStages.h"

namespace tessaloom::test {

/// Succeeds when the colours of `actual` are within 0.6 of an 8-bit step of the reference on average and
/// within 3 everywhere but on hard edges, and every pixel is opaque. Otherwise leaves NAME-actual.png,
/// -expected and -difference in tests/output.
::testing::AssertionResult matchesReference(const BgraImage& actual, const ReferenceCanvas& expected,
                                            const std::string& name);

}  // namespace tessaloom::test
