// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/GifEncoder.h"

#include <array>
#include <cmath>
#include <utility>

#include "media/PaletteChoice.h"

namespace tessaloom {
namespace {

/// How many pictures share a palette: the more there are, the worse it suits each.
constexpr std::size_t mostGathered = 32;
/// Frames at rest are small, but a rest may last for hours.
constexpr std::size_t mostGatheredFrames = 4096;
/// A new palette costs bytes in every frame. The old one stays while its squared error isn't so much greater.
constexpr double bearableError = 1.5;
/// One index is left for the transparent one.
constexpr std::size_t mostColors = 255;

std::uint32_t packed(const std::array<double, 3>& mean) {
    const auto byte = [](double value) { return static_cast<std::uint32_t>(std::lround(value)); };
    return byte(mean[2]) << 16 | byte(mean[1]) << 8 | byte(mean[0]);
}

double squaredError(ColorPalette& palette, const std::vector<ColorHistogram::Group>& groups) {
    double sum = 0;
    for (const auto& group : groups) {
        const std::uint32_t color = packed(group.mean);
        sum += group.count * squaredDistance(color, palette.colors()[palette.nearest(color)]);
    }
    return sum;
}

/// An update with a palette of its own that holds only what occurs in it.
struct CompactUpdate {
    std::vector<IndexedPixel> pixels;
    std::vector<std::uint32_t> palette;
    std::uint8_t transparent = 0;

    CompactUpdate(const GifCanvas::Update& update, std::span<const std::uint32_t> colors)
        : pixels(update.pixels.begin(), update.pixels.end()) {
        transparent = place(update.transparent, 0);
        for (IndexedPixel& pixel : pixels) {
            for (std::uint8_t* index : {&pixel.index, &pixel.alternative})
                *index = places_[*index] ? *places_[*index] : place(*index, colors[*index]);
        }
    }

  private:
    std::uint8_t place(std::uint8_t index, std::uint32_t color) {
        const auto found = static_cast<std::uint8_t>(palette.size());
        palette.push_back(color);
        places_[index] = found;
        return found;
    }

    std::array<std::optional<std::uint8_t>, 256> places_;
};

}  // namespace

GifEncoder GifEncoder::create(const std::filesystem::path& path, bool loops) {
    return GifEncoder(GifFile::create(path, loops));
}

void GifEncoder::add(const BgraView& picture, int delay) {
    histogram_.add(picture);
    gradients_.add(picture);
    gathered_.push_back({spareCopy(picture), delay});
    if (++gatheredPictures_ == mostGathered) writeGathered();
}

void GifEncoder::addAgain(int delay) {
    gathered_.push_back({nullptr, delay});
    if (gathered_.size() >= mostGatheredFrames) writeGathered();
}

void GifEncoder::finish() {
    writeGathered();
    file_.finish();
}

std::unique_ptr<BgraImage> GifEncoder::spareCopy(const BgraView& picture) {
    auto copy = std::make_unique<BgraImage>();
    if (!spare_.empty()) {
        copy = std::move(spare_.back());
        spare_.pop_back();
    }
    copyPixels(picture, *copy);
    return copy;
}

void GifEncoder::writeGathered() {
    if (gatheredPictures_ > 0) choosePaletteForGathered();
    for (GatheredFrame& frame : gathered_) {
        write(frame);
        if (frame.picture) spare_.push_back(std::move(frame.picture));
    }
    gathered_.clear();
    gatheredPictures_ = 0;
}

void GifEncoder::choosePaletteForGathered() {
    const auto groups = histogram_.groups();
    ColorPalette fresh(choosePalette(groups, mostColors));
    if (!dithered_ ||
        squaredError(dithered_->palette(), groups) > bearableError * squaredError(fresh, groups)) {
        paletteIsGlobal_ = !dithered_;
        dithered_.emplace(std::move(fresh), gradients_);
    }
    histogram_.clear();
    gradients_.clear();
}

void GifEncoder::write(const GatheredFrame& frame) {
    const ColorPalette& palette = dithered_->palette();
    const auto update =
        frame.picture ? canvas_.show(frame.picture->view(), *dithered_) : canvas_.showAgain(palette);
    if (paletteIsGlobal_) {
        file_.append({.area = update.area,
                      .delay = frame.delay,
                      .pixels = update.pixels,
                      .palette = palette.table(),
                      .transparent = update.transparent});
        return;
    }
    const CompactUpdate compact(update, palette.colors());
    file_.append({.area = update.area,
                  .delay = frame.delay,
                  .pixels = compact.pixels,
                  .palette = compact.palette,
                  .transparent = compact.transparent});
}

}  // namespace tessaloom
