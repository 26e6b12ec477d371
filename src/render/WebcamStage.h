// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

#include "base/WorkerPool.h"
#include "render/BubbleMask.h"
#include "render/GaussianBlur.h"
#include "render/PictureReader.h"
#include "render/Renderer.h"
#include "render/RowScratch.h"
#include "render/Uniforms.h"

namespace tessaloom {

/// Draws the camera bubble: the camera's picture, what lies behind the person blurred where a matte tells it,
/// in a shape with border and shadow.
class WebcamStage {
  public:
    /// Once per frame, before its rows. The camera's picture is not empty; the matte may be. Both must
    /// outlive the rows.
    void prepare(const WebcamUniforms& uniforms, const SourcePicture& camera, const SourcePicture& matte,
                 int canvasWidth, int canvasHeight, WorkerPool& pool);
    /// Draws nothing until the next `prepare`.
    void clear() { draws_ = false; }

    /// Draws over the pixels `columns` of canvas row `y`. Several threads may draw at once, each with its own
    /// scratch, grown to the canvas and to all pictures.
    void drawRow(int y, PixelSpan columns, RowScratch& scratch, std::uint8_t* canvasRow) const;

  private:
    void prepareBlur(double amount, const SourcePicture& camera, WorkerPool& pool);
    const std::uint8_t* cameraRow(int y, PixelSpan span, RowScratch& scratch) const;
    // Of a row whose camera pixels begin with the first of `span`.
    void drawInner(PixelSpan span, const std::uint8_t* camera, std::uint8_t* canvasRow) const;
    void mixEdge(PixelSpan span, const BubbleMask::Mix* mixes, const std::uint8_t* camera,
                 std::uint8_t* canvasRow) const;

    bool draws_ = false;
    bool blurs_ = false;
    BubbleMask mask_;
    std::array<std::uint8_t, 3> border_{};
    /// Of the camera in its whole shape, in 1/32768.
    int opacity_ = 0;
    PictureReader camera_;
    PictureReader matte_;
    PictureReader background_;
    GaussianBlur blur_;
    /// What `blur_` was made of.
    double blurSigma_ = 0;
    std::uint64_t blurredIdentity_ = 0;
};

}  // namespace tessaloom
