// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

#include "render/RoundedBox.h"
#include "render/Uniforms.h"

namespace tessaloom {

/// Draws a rounded rectangle of one colour with soft edges: a caption's plate, the line under its spoken
/// word.
class RoundedRectStage {
  public:
    /// Once per frame, before its rows.
    void prepare(const RoundedRectUniforms& uniforms, int canvasWidth, int canvasHeight);
    /// Draws nothing until the next `prepare`.
    void clear() { rows_ = {}; }

    /// Draws over the pixels `columns` of canvas row `y`. Callable from any thread.
    void drawRow(int y, PixelSpan columns, std::uint8_t* canvasRow) const;

  private:
    void drawEdge(int y, PixelSpan span, std::uint8_t* canvasRow) const;

    int canvasWidth_ = 0;
    PixelSpan rows_;
    PixelSpan columns_;
    RoundedBox outline_;
    std::array<std::uint8_t, 4> color_{};
    /// Where the edge is not.
    double opacity_ = 0;
};

}  // namespace tessaloom
