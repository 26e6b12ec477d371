// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <filesystem>
#include <optional>

namespace tessaloom {

/// The picture that a file of GNOME's backgrounds ("<background>…") has for a screen of this size in pixels:
/// the smallest that covers it, else the largest. Nothing where it has several that take turns, whose times
/// aren't told apart here.
std::optional<std::filesystem::path> pictureOfGnomeBackground(const QByteArray& content, int width,
                                                              int height);

}  // namespace tessaloom
