// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ShownText.h"

#include <QString>

namespace tessaloom {

std::string shownText(std::string_view text, bool uppercase) {
    if (!uppercase) return std::string(text);
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toUpper().toStdString();
}

}  // namespace tessaloom
