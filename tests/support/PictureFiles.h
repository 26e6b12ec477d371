// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "media/BgraImage.h"

namespace tessaloom::test {

/// Writes an opaque picture to tests/output/NAME.png, to be looked at after a failure. Returns its path.
std::string writePicture(BgraView picture, const std::string& name);

}  // namespace tessaloom::test
