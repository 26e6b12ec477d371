// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace tessaloom {

/// The absolute path of the file that a command is to write. Throws CommandError when its folder isn't there
/// or a folder has its name: before the work, not after it.
std::filesystem::path outputFile(const std::filesystem::path& path);

}  // namespace tessaloom
