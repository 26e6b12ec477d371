// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/DesktopWallpaper.h"

#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <filesystem>

#include "platform/desktop/GnomeBackgroundFile.h"
#include "platform/desktop/GnomeWallpaper.h"
#include "platform/desktop/PlasmaWallpaper.h"
#include "platform/desktop/XfceWallpaper.h"
#include "render/PictureFile.h"

namespace tessaloom {
namespace {

constexpr int settingsLimitMilliseconds = 1000;

/// The settings' store may hang, so it is asked by a program that can be ended.
QByteArray gnomeSettings(const char* schema) {
    QProcess program;
    program.start("gsettings", {"list-recursively", schema});
    if (program.waitForFinished(settingsLimitMilliseconds)) return program.readAllStandardOutput();
    program.kill();
    return {};
}

/// Empty when it can't be read.
QByteArray content(const std::filesystem::path& path) {
    QFile file(QString::fromStdString(path.string()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray configuration(const char* file) {
    return content(QStandardPaths::locate(QStandardPaths::GenericConfigLocation, file).toStdString());
}

/// Of a folder that has one picture in several sizes the largest; a file itself.
std::filesystem::path largestPicture(const std::filesystem::path& place) {
    const QDir folder(QString::fromStdString((place / "contents" / "images").string()));
    QString largest = QString::fromStdString(place.string());
    int largestWidth = 0;
    for (const QFileInfo& file : folder.entryInfoList(QDir::Files, QDir::Name)) {
        const int width = QImageReader(file.filePath()).size().width();
        if (width <= largestWidth) continue;
        largestWidth = width;
        largest = file.filePath();
    }
    return largest.toStdString();
}

std::optional<std::filesystem::path> wallpaperFile(const DesktopScreen& screen) {
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(':');
    if (desktops.contains("GNOME") || desktops.contains("Unity")) {
        return gnomeWallpaper(
            (gnomeSettings("org.gnome.desktop.background") + gnomeSettings("org.gnome.desktop.interface"))
                .toStdString());
    }
    if (desktops.contains("KDE")) {
        const auto settings = configuration("plasma-org.kde.plasma.desktop-appletsrc").toStdString();
        const auto place = plasmaWallpaper(settings, screen.number);
        return place ? std::optional(largestPicture(*place)) : std::nullopt;
    }
    if (desktops.contains("XFCE")) {
        return xfceWallpaper(configuration("xfce4/xfconf/xfce-perchannel-xml/xfce4-desktop.xml"),
                             screen.name);
    }
    return std::nullopt;
}

}  // namespace

std::optional<BgraImage> desktopWallpaper(const DesktopScreen& screen) {
    auto file = wallpaperFile(screen);
    if (file && file->extension() == ".xml")
        file = pictureOfGnomeBackground(content(*file), screen.area.width, screen.area.height);
    if (!file) return std::nullopt;
    auto picture = readPictureFile(*file);
    return picture ? std::move(picture) : drawPictureFile(*file, screen.area.width, screen.area.height);
}

}  // namespace tessaloom
