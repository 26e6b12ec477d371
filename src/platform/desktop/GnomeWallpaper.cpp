// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/GnomeWallpaper.h"

#include <QUrl>
#include <string>

namespace tessaloom {
namespace {

/// Without the quotes, and the backslashes that stand before quotes within.
std::string unquoted(std::string_view text) {
    if (text.size() < 2) return {};
    std::string plain;
    bool escaped = false;
    for (const char character : text.substr(1, text.size() - 2)) {
        escaped = character == '\\' && !escaped;
        if (!escaped) plain += character;
    }
    return plain;
}

/// Empty when it isn't set.
std::string valueOf(std::string_view setting, std::string_view settings) {
    const std::string start = std::string(setting) + ' ';
    while (!settings.empty()) {
        const auto line = settings.substr(0, settings.find('\n'));
        if (line.starts_with(start)) return unquoted(line.substr(start.size()));
        settings.remove_prefix(std::min(line.size() + 1, settings.size()));
    }
    return {};
}

}  // namespace

std::optional<std::filesystem::path> gnomeWallpaper(std::string_view settings) {
    if (valueOf("org.gnome.desktop.background picture-options", settings) == "none") return std::nullopt;
    const bool dark = valueOf("org.gnome.desktop.interface color-scheme", settings) == "prefer-dark";
    std::string location = dark ? valueOf("org.gnome.desktop.background picture-uri-dark", settings) : "";
    if (location.empty()) location = valueOf("org.gnome.desktop.background picture-uri", settings);
    const QString file = QUrl(QString::fromStdString(location)).toLocalFile();
    if (file.isEmpty()) return std::nullopt;
    return file.toStdString();
}

}  // namespace tessaloom
