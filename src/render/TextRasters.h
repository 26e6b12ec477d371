// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "core/CaptionStyle.h"
#include "core/CaptionWords.h"
#include "core/Geometry.h"
#include "render/CaptionRaster.h"
#include "render/KeystrokeChipRaster.h"
#include "render/OverlayRaster.h"
#include "render/RasterCache.h"
#include "render/TextRasterKeys.h"
#include "render/WordChip.h"

namespace tessaloom {

/// The texts that a renderer has rastered, each kept as a `Picture`: whatever the renderer draws from. What
/// it returns is null when there is nothing to draw, and valid until the next call. Main thread, as long as
/// something still has to be rastered.
template <class Picture>
class TextRasters {
  public:
    struct Chip {
        Picture picture;
        /// In pixels.
        Size pixels;
    };
    struct CaptionLine {
        Picture picture;
        CaptionLayout layout;
    };
    /// Takes over a premultiplied raster; nothing when there is no memory for it.
    using Keep = std::function<std::optional<Picture>(BgraImage)>;

    explicit TextRasters(Keep keep) : keep_(std::move(keep)) {}

    const Chip* keystroke(std::string_view text) {
        return keystrokes_.get(text, [&](std::string_view) { return keptChip(keystrokeChipRaster(text)); });
    }

    const CaptionLine* captionLine(std::string_view text, std::string_view colorHex, bool uppercase) {
        return captionLines_.get(keys_.captionLine(text, colorHex, uppercase),
                                 [&](std::string_view) -> std::optional<CaptionLine> {
                                     auto raster = captionRaster(text, colorHex, uppercase);
                                     if (!raster) return std::nullopt;
                                     auto picture = kept(std::move(raster->pixels));
                                     if (!picture) return std::nullopt;
                                     return CaptionLine{std::move(*picture), std::move(raster->layout)};
                                 });
    }

    const Chip* wordChip(std::string_view word, std::string_view colorHex, bool uppercase) {
        return wordChips_.get(keys_.wordChip(word, colorHex, uppercase), [&](std::string_view) {
            return keptChip(tessaloom::wordChip(word, colorHex, wordChipPadding, wordChipRadius, uppercase));
        });
    }

    /// Makes every raster that these lines need now, so that no frame has to wait for it.
    void prewarmCaptions(std::span<const std::string_view> lines, const CaptionStyle& style) {
        for (const std::string_view line : lines) {
            captionLine(line, style.color, style.uppercase);
            if (style.highlight != CaptionHighlight::box) continue;
            for (const std::string_view word : captionWords(line))
                wordChip(word, style.highlightColor, style.uppercase);
        }
    }

  private:
    std::optional<Picture> kept(BgraImage raster) {
        const int width = raster.width();
        const int height = raster.height();
        std::optional<Picture> picture = keep_(std::move(raster));
        if (!picture) logRasterNotKept(width, height);
        return picture;
    }

    std::optional<Chip> keptChip(std::optional<OverlayRaster> raster) {
        if (!raster) return std::nullopt;
        const Size pixels{static_cast<double>(raster->pixels.width()),
                          static_cast<double>(raster->pixels.height())};
        std::optional<Picture> picture = kept(std::move(raster->pixels));
        if (!picture) return std::nullopt;
        return Chip{std::move(*picture), pixels};
    }

    Keep keep_;
    TextRasterKeys keys_;
    RasterCache<Chip> keystrokes_;
    RasterCache<CaptionLine> captionLines_;
    RasterCache<Chip> wordChips_;
};

}  // namespace tessaloom
