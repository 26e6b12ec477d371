// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>

#include "render/Backdrop.h"
#include "render/ContentMask.h"
#include "render/PictureReader.h"

namespace tessaloom {

/// Draws the framed recording on its background, the lowest layer of a frame.
class CompositeStage {
  public:
    /// Once per frame, before its rows. `scratch` has one entry per participant of `pool`, grown to the
    /// canvas and to both pictures.
    void prepare(const CompositeUniforms& uniforms, const Backdrop::Pictures& pictures, WorkerPool& pool,
                 std::span<RowScratch> scratch);

    /// Draws the pixels `columns` of canvas row `y`, which starts at `canvasRow`. Several threads may draw at
    /// once, each with its own scratch.
    void drawRow(int y, PixelSpan columns, RowScratch& scratch, std::uint8_t* canvasRow) const;

  private:
    int width_ = 0;
    ContentMask mask_;
    Backdrop backdrop_;
    PictureReader recording_;
};

}  // namespace tessaloom
