// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/WordChip.h"

#include <QPainter>
#include <cmath>

#include "core/Color.h"
#include "render/CaptionFont.h"
#include "render/ShownText.h"
#include "render/TextLine.h"

namespace tessaloom {
namespace {

constexpr double verticalPadding = 1.1;
constexpr float lightestUnderWhite = 0.55F;

QColor textColorOn(const Color& box) {
    const float luminance = 0.2126F * box.red + 0.7152F * box.green + 0.0722F * box.blue;
    return luminance > lightestUnderWhite ? QColor::fromRgbF(0.07F, 0.07F, 0.08F) : QColor(Qt::white);
}

}  // namespace

std::optional<OverlayRaster> wordChip(std::string_view text, std::string_view colorHex, double padding,
                                      double radius, bool uppercase) {
    const TextLine word(shownText(text, uppercase), captionFont());
    const Color box = colorFromHex(colorHex);
    const Size size{std::ceil(word.width()) + 2 * padding,
                    std::ceil(word.height()) + padding * verticalPadding};
    return drawRaster(size, rasterScale, [&](QPainter& painter) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgbF(box.red, box.green, box.blue));
        painter.drawRoundedRect(QRectF(0, 0, size.width, size.height), radius, radius);
        painter.setPen(textColorOn(box));
        word.drawInBox(painter, {padding, (size.height - word.height()) * 0.5});
    });
}

}  // namespace tessaloom
