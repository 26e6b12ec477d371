// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace tessaloom {

/// The wallpaper of a screen of KDE's Plasma, an image file or a folder with the same picture in several
/// sizes (contents/images/WIDTHxHEIGHT.*). `settings` is the text of plasma-org.kde.plasma.desktop-appletsrc;
/// screens are counted from 0, the primary one. Nothing where the screen shows no picture.
std::optional<std::filesystem::path> plasmaWallpaper(std::string_view settings, int screen);

}  // namespace tessaloom
