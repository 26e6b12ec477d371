// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CaptionRaster.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "core/CaptionWords.h"
#include "core/Color.h"
#include "render/CaptionFont.h"
#include "render/OverlayRaster.h"
#include "render/ShownText.h"
#include "render/TextLine.h"
#include "render/TextShadow.h"

namespace tessaloom {
namespace {

constexpr double widestLine = 2600;
/// Of a text without words.
constexpr double emptyLineHeight = 90;
/// Around the plate, for the shadow.
constexpr double margin = 24;
constexpr double sidePadding = 64;
constexpr double verticalPadding = 36;
/// From the raster's edge to the text, above and below.
constexpr double textInset = margin + verticalPadding;

/// Words `first` to `last` (exclusive) and their width with the blanks between them.
struct Line {
    std::size_t first = 0;
    std::size_t last = 0;
    double width = 0;
};

/// A caption's words, measured and broken into lines.
struct BrokenText {
    std::vector<TextLine> words;
    std::vector<Line> lines;
    double blank = 0;
    double lineHeight = emptyLineHeight;
    double descent = 0;
    bool isRightToLeft = false;
};

std::vector<Line> wrapped(const std::vector<TextLine>& words, double blank) {
    std::vector<Line> lines;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const double width = words[i].width();
        if (lines.empty() || lines.back().width + blank + width > widestLine) {
            lines.push_back({i, i + 1, width});
        } else {
            lines.back().last = i + 1;
            lines.back().width += blank + width;
        }
    }
    return lines;
}

BrokenText broken(const std::string& text) {
    const QFont font = captionFont();
    BrokenText result;
    for (const std::string_view word : captionWords(text))
        result.words.emplace_back(word, font);
    double tallest = 0;
    for (const TextLine& word : result.words) {
        tallest = std::max(tallest, word.height());
        result.descent = std::max(result.descent, word.descent());
    }
    if (!result.words.empty()) result.lineHeight = std::ceil(tallest);
    result.blank = TextLine(" ", font).width();
    result.lines = wrapped(result.words, result.blank);
    result.isRightToLeft = QString::fromStdString(text).isRightToLeft();
    return result;
}

Size rasterSize(const BrokenText& text) {
    double width = 0;
    for (const Line& line : text.lines)
        width = std::max(width, line.width);
    const double height = text.lineHeight * static_cast<double>(std::max<std::size_t>(text.lines.size(), 1));
    return {std::ceil(width) + 2 * (sidePadding + margin), std::ceil(height) + 2 * textInset};
}

CaptionLayout laidOut(const BrokenText& text) {
    const Size size = rasterSize(text);
    CaptionLayout layout{size, {margin, margin, size.width - 2 * margin, size.height - 2 * margin}, {}};
    layout.wordRects.reserve(text.words.size());
    double y = size.height - textInset;
    for (const Line& line : text.lines) {
        y -= text.lineHeight;
        const double left = (size.width - line.width) * 0.5;
        double x = left;
        for (std::size_t i = line.first; i < line.last; ++i) {
            const double width = text.words[i].width();
            const double mirrored = left + (left + line.width) - x - width;
            layout.wordRects.push_back({text.isRightToLeft ? mirrored : x, y, width, text.lineHeight});
            x += width + text.blank;
        }
    }
    return layout;
}

QColor toQColor(const Color& color) {
    return QColor::fromRgbF(color.red, color.green, color.blue);
}

}  // namespace

std::optional<CaptionRaster> captionRaster(std::string_view text, std::string_view colorHex, bool uppercase) {
    const BrokenText words = broken(shownText(text, uppercase));
    CaptionLayout layout = laidOut(words);
    auto raster = drawRaster(layout.size, rasterScale, [&](QPainter& painter) {
        painter.setPen(toQColor(colorFromHex(colorHex)));
        for (std::size_t i = 0; i < words.words.size(); ++i) {
            const Rect& box = layout.wordRects[i];
            words.words[i].draw(painter, {box.x, layout.size.height - box.y - words.descent});
        }
    });
    if (!raster) return std::nullopt;
    addTextShadow(raster->pixels);
    return CaptionRaster{std::move(raster->pixels), std::move(layout)};
}

}  // namespace tessaloom
