// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ChooserLayout.h"

#include <Qt>
#include <QtGlobal>
#include <algorithm>
#include <array>

namespace tessaloom {
namespace {

constexpr std::array cardWidths{380, 340, 300, 270, 240, 215, 190};
constexpr int mostColumns = 7;
constexpr int screenMargin = 24;
constexpr int sheetPadding = 18;
constexpr int leastSheetWidth = 540;  ///< for its heading
constexpr int headingHeight = 64;
constexpr int footingHeight = 42;
constexpr int cardPadding = 14;
constexpr int captionHeight = 50;

int dividedUp(int dividend, int divisor) {
    return (dividend + divisor - 1) / divisor;
}

ChooserLayout withCards(int width, QSize room, int count) {
    ChooserLayout layout;
    const int fitting = std::clamp((room.width() - 2 * sheetPadding) / width, 1, mostColumns);
    const int rows = dividedUp(count, fitting);
    layout.columns = dividedUp(count, rows);  // rows of about the same length
    const int pictureWidth = width - 2 * cardPadding;
    layout.picture = {pictureWidth, pictureWidth * 10 / 16};
    layout.card = {width, layout.picture.height() + 2 * cardPadding + captionHeight};
    layout.sheet = {std::max(layout.columns * width + 2 * sheetPadding, leastSheetWidth),
                    rows * layout.card.height() + headingHeight + footingHeight};
    return layout;
}

}  // namespace

ChooserLayout chooserLayout(QSize screen, int count) {
    const QSize room = screen - QSize(2 * screenMargin, 2 * screenMargin);
    ChooserLayout layout;
    for (const int width : cardWidths) {
        layout = withCards(width, room, count);
        if (layout.sheet.height() <= room.height() && layout.sheet.width() <= room.width()) break;
    }
    layout.sheet = layout.sheet.boundedTo(room);
    return layout;
}

int cardAfterKey(int key, int current, int columns, int count) {
    const int last = count - 1;
    const bool isInLastRow = current / columns == last / columns;
    switch (key) {
        case Qt::Key_Left:
            return std::max(current - 1, 0);
        case Qt::Key_Right:
            return std::min(current + 1, last);
        case Qt::Key_Up:
            return current < columns ? current : current - columns;
        case Qt::Key_Down:
            return isInLastRow ? current : std::min(current + columns, last);
        default:
            return current;
    }
}

}  // namespace tessaloom
