// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CaptionDrawing.h"

#include <algorithm>

#include "core/CaptionWords.h"
#include "core/Color.h"
#include "render/CaptionPlacement.h"
#include "render/WordChip.h"

namespace tessaloom {
namespace {

// Raster points.
constexpr float plateRadius = 30;
constexpr double underlineHeight = 9.9;
/// From the word's box down to the underline's lower edge: it straddles the box's edge.
constexpr double underlineDrop = 4.95;
/// Above and below the word.
constexpr double boxGrowth = 7.92;

Float4 withAlpha(const Color& color, float alpha) {
    return {color.red, color.green, color.blue, alpha};
}

/// A caption placed on its canvas.
struct PlacedCaption {
    const CaptionChip& chip;
    const CaptionLayout& layout;
    CaptionPlacement placement;
    float canvasWidth;
    float canvasHeight;

    // From raster points with the origin at the bottom left.
    Float4 toCanvas(const Rect& rect) const {
        const double scale = placement.scale;
        return toFloat4(Rect{placement.rect.x + scale * rect.x,
                             placement.rect.y + scale * (layout.size.height - rect.maxY()),
                             scale * rect.width, scale * rect.height});
    }

    RoundedRectUniforms roundedRect(const Rect& rect, const Float4& color, float radius) const {
        return {toCanvas(rect), color, {canvasWidth, canvasHeight, radius * placement.scale, chip.alpha}};
    }

    ChipUniforms raster(const Float4& rect) const {
        return {rect, {canvasWidth, canvasHeight, chip.alpha, 0}};
    }

    std::optional<Rect> activeWordRect() const {
        const int index = chip.activeWord.value_or(-1);
        if (index < 0 || static_cast<std::size_t>(index) >= layout.wordRects.size()) return std::nullopt;
        return layout.wordRects[static_cast<std::size_t>(index)];
    }
};

RoundedRectUniforms underline(const PlacedCaption& caption, Rect word) {
    word.y -= underlineDrop;
    word.height = underlineHeight;
    const Float4 color = withAlpha(colorFromHex(caption.chip.highlightHex), 1);
    return caption.roundedRect(word, color, static_cast<float>(underlineHeight / 2));
}

ChipUniforms wordBox(const PlacedCaption& caption, const Rect& word) {
    return caption.raster(caption.toCanvas({word.x - wordChipPadding, word.y - boxGrowth,
                                            word.width + 2 * wordChipPadding, word.height + 2 * boxGrowth}));
}

Rect hull(const Rect& a, const Rect& b) {
    const double x = std::min(a.x, b.x);
    const double y = std::min(a.y, b.y);
    return {x, y, std::max(a.maxX(), b.maxX()) - x, std::max(a.maxY(), b.maxY()) - y};
}

}  // namespace

Rect extentOf(const CaptionDrawing& drawing) {
    Rect extent = toRect(drawing.text.rect);
    if (drawing.plate) extent = hull(extent, toRect(drawing.plate->rect));
    if (drawing.underline) extent = hull(extent, toRect(drawing.underline->rect));
    if (drawing.boxedWord) extent = hull(extent, toRect(drawing.boxedWord->chip.rect));
    return extent;
}

CaptionDrawing captionDrawing(const CaptionChip& chip, const CaptionLayout& layout, float canvasWidth,
                              float canvasHeight, const std::optional<Rect>& keepOut) {
    const CaptionPlacement placement =
        captionPlacement(chip, layout.size, canvasWidth, canvasHeight, keepOut);
    const PlacedCaption caption{chip, layout, placement, canvasWidth, canvasHeight};
    CaptionDrawing drawing;
    if (chip.plate == CaptionPlate::bar) {
        const Float4 color = withAlpha(colorFromHex(chip.bgHex), chip.bgAlpha);
        drawing.plate = caption.roundedRect(layout.plateRect, color, plateRadius);
    }
    drawing.text = caption.raster(toFloat4(placement.rect));
    const std::optional<Rect> active = caption.activeWordRect();
    if (!active) return drawing;
    if (chip.highlight == CaptionHighlight::underline) drawing.underline = underline(caption, *active);
    const auto word = captionWord(chip.text, *chip.activeWord);
    if (chip.highlight == CaptionHighlight::box && word) {
        drawing.boxedWord = {wordBox(caption, *active), *word};
    }
    return drawing;
}

}  // namespace tessaloom
