// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace tessaloom {

/// Where the last whole box of a QuickTime or MPEG-4 file ends when a part of another one follows, as in a
/// recording whose disk was full. Nothing for a file that isn't torn, or whose index is.
std::optional<std::uint64_t> endOfWholeBoxes(const std::filesystem::path& path);

}  // namespace tessaloom
