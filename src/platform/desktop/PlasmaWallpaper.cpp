// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/PlasmaWallpaper.h"

#include <QUrl>
#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace tessaloom {
namespace {

/// One desktop or panel, as far as it matters here.
struct Containment {
    std::string screen;
    std::string wallpaperPlugin;
    std::string image;
};

constexpr std::string_view imagePlugin = "org.kde.image";

/// "[Containments][1][General]" is {"Containments", "1", "General"}.
std::vector<std::string> groupNames(std::string_view line) {
    std::vector<std::string> names;
    while (line.starts_with('[') && line.find(']') != std::string_view::npos) {
        const auto end = line.find(']');
        names.emplace_back(line.substr(1, end - 1));
        line.remove_prefix(end + 1);
    }
    return names;
}

void read(std::string_view line, const std::vector<std::string>& group, Containment& containment) {
    static const std::vector<std::string> imageGroup{"Wallpaper", std::string(imagePlugin), "General"};
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) return;
    const auto key = line.substr(0, equals);
    const std::string value(line.substr(equals + 1));
    const std::vector<std::string> inside(group.begin() + 2, group.end());
    if (inside.empty() && key == "lastScreen") containment.screen = value;
    if (inside.empty() && key == "wallpaperplugin") containment.wallpaperPlugin = value;
    if (inside == imageGroup && key == "Image") containment.image = value;
}

std::map<std::string, Containment> containmentsOf(std::string_view settings) {
    std::map<std::string, Containment> containments;
    std::vector<std::string> group;
    while (!settings.empty()) {
        const auto line = settings.substr(0, settings.find('\n'));
        settings.remove_prefix(std::min(line.size() + 1, settings.size()));
        if (line.starts_with('[')) {
            group = groupNames(line);
        } else if (group.size() >= 2 && group[0] == "Containments") {
            read(line, group, containments[group[1]]);
        }
    }
    return containments;
}

}  // namespace

std::optional<std::filesystem::path> plasmaWallpaper(std::string_view settings, int screen) {
    const auto containments = containmentsOf(settings);
    const auto shown = std::ranges::find_if(containments, [&](const auto& entry) {
        const Containment& containment = entry.second;
        return containment.screen == std::to_string(screen) && containment.wallpaperPlugin == imagePlugin &&
               !containment.image.empty();
    });
    if (shown == containments.end()) return std::nullopt;
    const auto location = QString::fromStdString(shown->second.image);
    return QUrl::fromUserInput(location, {}, QUrl::AssumeLocalFile).toLocalFile().toStdString();
}

}  // namespace tessaloom
