// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace tessaloom {

/// The wallpaper of GNOME and what is built on it, the dark one where the user prefers dark. `settings` are
/// the lines "SCHEMA KEY VALUE" that `gsettings list-recursively` prints for org.gnome.desktop.background and
/// org.gnome.desktop.interface. Nothing where the desktop shows a colour, or something other than a file.
std::optional<std::filesystem::path> gnomeWallpaper(std::string_view settings);

}  // namespace tessaloom
