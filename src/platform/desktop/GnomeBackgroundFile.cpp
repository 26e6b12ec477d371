// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/GnomeBackgroundFile.h"

#include <QSize>
#include <QXmlStreamReader>
#include <algorithm>
#include <string>
#include <vector>

namespace tessaloom {
namespace {

struct SizedPicture {
    QSize size;
    std::string file;
};

bool isLessSuitable(const SizedPicture& one, const SizedPicture& other, const QSize& screen) {
    const auto covers = [&](const SizedPicture& picture) {
        return picture.size.width() >= screen.width() && picture.size.height() >= screen.height();
    };
    if (covers(one) != covers(other)) return covers(other);
    return covers(one) ? one.size.width() > other.size.width() : one.size.width() < other.size.width();
}

SizedPicture pictureAt(QXmlStreamReader& xml) {
    const QSize size(xml.attributes().value("width").toInt(), xml.attributes().value("height").toInt());
    return {size, xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed().toStdString()};
}

}  // namespace

std::optional<std::filesystem::path> pictureOfGnomeBackground(const QByteArray& content, int width,
                                                              int height) {
    QXmlStreamReader xml(content);
    std::vector<SizedPicture> pictures;
    int stills = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        if (xml.name() == QLatin1String("static")) ++stills;
        if (xml.name() == QLatin1String("size")) pictures.push_back(pictureAt(xml));
    }
    if (xml.hasError() || stills != 1 || pictures.empty()) return std::nullopt;
    const auto best = std::ranges::max_element(pictures, [&](const auto& one, const auto& other) {
        return isLessSuitable(one, other, {width, height});
    });
    return best->file;
}

}  // namespace tessaloom
