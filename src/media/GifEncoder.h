// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "media/BgraImage.h"
#include "media/ColorHistogram.h"
#include "media/DitheredPalette.h"
#include "media/GifCanvas.h"
#include "media/GifFile.h"
#include "media/GradientColors.h"

namespace tessaloom {

/// Makes a GIF of full pictures. Some dozens at a time are gathered and get a palette that suits them, so
/// that memory doesn't grow with the length; of each only what differs from the one before is stored. Used by
/// one thread at a time. Throws std::system_error.
class GifEncoder {
  public:
    /// Replaces the file at `path`.
    static GifEncoder create(const std::filesystem::path& path, bool loops);

    /// Appends a picture that is shown for `delay` hundredths of a second. All have the first one's size.
    void add(const BgraView& picture, int delay);
    /// Appends the picture before once more.
    void addAgain(int delay);

    /// Completes the file, which has a picture.
    void finish();

  private:
    struct GatheredFrame {
        /// None: the picture before.
        std::unique_ptr<BgraImage> picture;
        int delay = 0;
    };

    explicit GifEncoder(GifFile file) : file_(std::move(file)) {}

    std::unique_ptr<BgraImage> spareCopy(const BgraView& picture);
    void writeGathered();
    void choosePaletteForGathered();
    void write(const GatheredFrame& frame);

    GifFile file_;
    std::vector<GatheredFrame> gathered_;
    std::size_t gatheredPictures_ = 0;
    std::vector<std::unique_ptr<BgraImage>> spare_;
    ColorHistogram histogram_;
    GradientColors gradients_;
    std::optional<DitheredPalette> dithered_;
    bool paletteIsGlobal_ = true;
    GifCanvas canvas_;
};

}  // namespace tessaloom
