// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

#include "base/WorkerPool.h"
#include "media/BgraImage.h"
#include "render/BlurredPictureReader.h"
#include "render/ContentMask.h"
#include "render/DropShadow.h"
#include "render/PictureReader.h"
#include "render/RowScratch.h"
#include "render/Uniforms.h"

namespace tessaloom {

/// What lies behind the framed recording: background and drop shadow, drawn once and kept as long as it stays
/// the same. Only the pixels that the recording does not cover are drawn.
class Backdrop {
  public:
    /// The pictures a background may show (neither empty) and numbers that change with their contents; 0 is
    /// unknown.
    struct Pictures {
        BgraView recording;
        std::uint64_t recordingIdentity = 0;
        BgraView wallpaper;
        std::uint64_t wallpaperIdentity = 0;
    };

    /// `mask` is that of the same frame; `scratch` has one entry per participant of `pool`.
    void prepare(const CompositeUniforms& uniforms, const ContentMask& mask, const Pictures& pictures,
                 WorkerPool& pool, std::span<RowScratch> scratch);

    const std::uint8_t* row(int y) const { return image_.row(y); }

  private:
    /// All that the picture depends on.
    struct Look {
        Float4 a, content, bgTop, bgBottom, d;
        float corner = 0;
        float style = 0;
        std::uint64_t pictureIdentity = 0;

        bool operator==(const Look&) const = default;
    };

    void preparePicture(const Pictures& pictures);
    void drawRow(int y, const ContentMask::Row& row, RowScratch& scratch);
    void fill(int y, PixelSpan span, RowScratch& scratch);
    bool showsRecording() const { return look_.style > 2.5F; }
    bool showsPicture() const { return look_.style > 1.5F; }

    bool drawn_ = false;
    Look look_;
    BgraImage image_;
    DropShadow shadow_;
    PictureReader sharp_;
    BlurredPictureReader blurred_;
    bool blurs_ = false;
};

}  // namespace tessaloom
