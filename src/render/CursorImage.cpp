// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CursorImage.h"

#include <QByteArray>
#include <array>
#include <optional>

#include "render/DrawnCursor.h"
#include "render/ThemeCursor.h"

namespace tessaloom {
namespace {

constexpr double largeFactor = 1.7;

CursorImage arrow(std::span<const std::string> themes) {
    static constexpr std::array names{"left_ptr", "default", "arrow"};
    std::optional<CursorImage> found = themeCursor(names, themes);
    return found ? std::move(*found) : drawnArrow();
}

CursorImage hand(std::span<const std::string> themes) {
    static constexpr std::array names{"hand2", "pointer", "pointing_hand", "hand1", "hand"};
    std::optional<CursorImage> found = themeCursor(names, themes);
    return found ? std::move(*found) : drawnHand();
}

CursorImage enlarged(CursorImage image) {
    image.size = {image.size.width * largeFactor, image.size.height * largeFactor};
    image.hotspot = {image.hotspot.x * largeFactor, image.hotspot.y * largeFactor};
    return image;
}

}  // namespace

std::vector<std::string> cursorThemes() {
    std::vector<std::string> themes{"default", "Adwaita", "DMZ-White", "DMZ-Black", "breeze_cursors", "Yaru"};
    const QByteArray chosen = qgetenv("XCURSOR_THEME");
    if (!chosen.isEmpty()) themes.insert(themes.begin(), chosen.toStdString());
    return themes;
}

CursorImage makeCursorImage(CursorStyle style, std::span<const std::string> themes) {
    switch (style) {
        case CursorStyle::hand:
            return hand(themes);
        case CursorStyle::large:
            return enlarged(arrow(themes));
        case CursorStyle::dot:
            return drawnDot();
        case CursorStyle::ring:
            return drawnRing();
        case CursorStyle::system:
            break;
    }
    return arrow(themes);
}

}  // namespace tessaloom
