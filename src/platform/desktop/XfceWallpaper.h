// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <filesystem>
#include <optional>
#include <string>

namespace tessaloom {

/// The wallpaper that XFCE shows on a monitor's first workspace. `settings` is the content of
/// xfce4-desktop.xml, monitors have their outputs' names ("HDMI-1"). Nothing where it shows a colour.
std::optional<std::filesystem::path> xfceWallpaper(const QByteArray& settings, const std::string& monitor);

}  // namespace tessaloom
