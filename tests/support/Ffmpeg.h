// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace tessaloom::test {

/// Runs FFmpeg's program, which replaces existing files. Throws std::runtime_error when it fails.
void runFfmpeg(const std::vector<std::string>& arguments);

}  // namespace tessaloom::test
