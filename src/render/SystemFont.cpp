// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/SystemFont.h"

#include <QFontDatabase>

namespace tessaloom {

QFont systemFont(int size, QFont::Weight weight) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(size);
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

}  // namespace tessaloom
