// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/XfceWallpaper.h"

#include <QStringList>
#include <QXmlStreamReader>
#include <map>

namespace tessaloom {
namespace {

/// All properties by the path of their names, "backdrop/screen0/…".
std::map<QString, QString> valuesOf(const QByteArray& settings) {
    std::map<QString, QString> values;
    QXmlStreamReader xml(settings);
    QStringList path;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.name() != QLatin1String("property")) continue;
        if (xml.isStartElement()) {
            path.append(xml.attributes().value("name").toString());
            values[path.join('/')] = xml.attributes().value("value").toString();
        } else if (xml.isEndElement()) {
            path.removeLast();
        }
    }
    return values;
}

}  // namespace

std::optional<std::filesystem::path> xfceWallpaper(const QByteArray& settings, const std::string& monitor) {
    static const QString noPicture = "0";
    auto values = valuesOf(settings);
    const QString place = "backdrop/screen0/monitor" + QString::fromStdString(monitor) + "/workspace0/";
    const QString file = values[place + "last-image"];
    if (file.isEmpty() || values[place + "image-style"] == noPicture) return std::nullopt;
    return file.toStdString();
}

}  // namespace tessaloom
