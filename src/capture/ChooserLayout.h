// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>

namespace tessaloom {

/// How the chooser's cards lie on its sheet. In points.
struct ChooserLayout {
    int columns = 1;
    QSize card;
    QSize picture;  ///< what a card's picture may take up at most
    QSize sheet;
};

/// For `count` cards, at least one: as large as they can be without being scrolled, up to a limit; when even
/// the smallest don't fit, those, to be scrolled up and down.
ChooserLayout chooserLayout(QSize screen, int count);

/// The card that an arrow key (Qt::Key) leads to from this one. Left and right go on in the next row, up and
/// down stay in the column, but for a last row that is too short; at the ends it stays where it is, as it
/// does for other keys.
int cardAfterKey(int key, int current, int columns, int count);

}  // namespace tessaloom
