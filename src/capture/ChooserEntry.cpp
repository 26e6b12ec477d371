// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ChooserEntry.h"

#include <cmath>

#include "capture/SourceResolver.h"

namespace tessaloom {
namespace {

QString sizeText(const Rect& rect, double pixelsPerPoint) {
    return QStringLiteral("%1 × %2")
        .arg(std::lround(rect.width * pixelsPerPoint))
        .arg(std::lround(rect.height * pixelsPerPoint));
}

ChooserEntry displayEntry(const ShareableContent& content, std::size_t number) {
    const ShareableDisplay& display = content.displays[number];
    const QString title =
        display.isMain ? QStringLiteral("Main display") : QStringLiteral("Display %1").arg(number);
    return {.filter = {std::nullopt, display.bounds, content.pointPixelScale},
            .title = content.displays.size() == 1 ? QStringLiteral("Whole screen") : title,
            .detail = sizeText(display.bounds, content.pointPixelScale)};
}

/// Of a window without a title its application's name is the title.
ChooserEntry windowEntry(const ShareableContent& content, const ShareableWindow& window) {
    const QString size = sizeText(window.frame, content.pointPixelScale);
    const auto application = QString::fromStdString(window.applicationName);
    const QString title = QString::fromStdString(window.title).simplified();
    ChooserEntry entry{.filter = {window.id, window.frame, content.pointPixelScale},
                       .title = title.isEmpty() ? application : title,
                       .detail = title.isEmpty() || application.isEmpty() ? size : application};
    if (entry.title.isEmpty()) entry.title = QStringLiteral("Untitled window");
    return entry;
}

}  // namespace

std::vector<ChooserEntry> chooserEntries(const ShareableContent& content) {
    std::vector<ChooserEntry> entries;
    for (std::size_t number = 0; number < content.displays.size(); ++number)
        entries.push_back(displayEntry(content, number));
    for (const ShareableWindow& window : content.windows) {
        if (isRecordable(window)) entries.push_back(windowEntry(content, window));
    }
    return entries;
}

}  // namespace tessaloom
