// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ThemeCursor.h"

#include <X11/Xcursor/Xcursor.h>

#include <cstring>
#include <memory>

namespace tessaloom {
namespace {

constexpr int pointSize = 24;
/// Enough for a twofold zoom on a 4K canvas.
constexpr int pixelSize = 96;

struct ImageDestroy {
    void operator()(XcursorImage* image) const { XcursorImageDestroy(image); }
};
using ThemeImage = std::unique_ptr<XcursorImage, ImageDestroy>;

ThemeImage load(const char* name, const std::string& theme, int size) {
    ThemeImage image(XcursorLibraryLoadImage(name, theme.c_str(), size));
    if (image && (image->width == 0 || image->height == 0)) image.reset();
    return image;
}

// The file's pixels are premultiplied 32-bit words with alpha on top: blue, green, red, alpha in memory.
BgraImage toPicture(const XcursorImage& image) {
    BgraImage picture(static_cast<int>(image.width), static_cast<int>(image.height));
    for (int y = 0; y < picture.height(); ++y) {
        const XcursorPixel* row = image.pixels + static_cast<std::size_t>(y) * image.width;
        std::memcpy(picture.row(y), row, static_cast<std::size_t>(image.width) * 4);
    }
    return picture;
}

std::optional<CursorImage> load(const char* name, const std::string& theme) {
    const ThemeImage points = load(name, theme, pointSize);
    const ThemeImage pixels = load(name, theme, pixelSize);
    if (!points || !pixels) return std::nullopt;
    const double scaleX = static_cast<double>(pixels->width) / points->width;
    const double scaleY = static_cast<double>(pixels->height) / points->height;
    return CursorImage{toPicture(*pixels),
                       {static_cast<double>(points->width), static_cast<double>(points->height)},
                       {pixels->xhot / scaleX, pixels->yhot / scaleY}};
}

}  // namespace

std::optional<CursorImage> themeCursor(std::span<const char* const> names,
                                       std::span<const std::string> themes) {
    for (const std::string& theme : themes) {
        for (const char* name : names) {
            if (std::optional<CursorImage> found = load(name, theme)) return found;
        }
    }
    return std::nullopt;
}

}  // namespace tessaloom
