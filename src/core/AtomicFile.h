// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tessaloom {

/// Puts `content` in the place of the file at `path` in one step, on the disk when it returns. The folder
/// must exist. Throws std::system_error; then the old file stands and nothing else is left behind.
void replaceFile(const std::filesystem::path& path, std::string_view content);

/// Makes a file that isn't there yet. Not forced to the disk: for content that is no loss when the power
/// fails. Throws std::system_error.
void writeNewFile(const std::filesystem::path& path, std::string_view content);

/// The whole content. Throws std::system_error.
std::string readFile(const std::filesystem::path& path);

}  // namespace tessaloom
