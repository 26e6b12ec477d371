// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/SizeArgument.h"

#include <QRegularExpression>

#include "shell/CommandError.h"

namespace tessaloom {

CanvasSize parseSize(const QString& text) {
    constexpr int largestSide = 16384;
    static const QRegularExpression pattern(QStringLiteral("^(\\d{1,5})x(\\d{1,5})$"));
    const auto match = pattern.match(text);
    const CanvasSize size{match.captured(1).toInt(), match.captured(2).toInt()};
    if (size.width < 1 || size.height < 1 || size.width > largestSide || size.height > largestSide) {
        throw UsageError("--size takes WIDTHxHEIGHT in pixels, 1 to 16384 each.");
    }
    return size;
}

}  // namespace tessaloom
