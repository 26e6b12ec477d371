// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/SubpixelGrid.h"

#include <cmath>

namespace tessaloom {
namespace {

constexpr double stepsPerPixel = 128;

/// Moves both ends of a stretch, given in units of `pixelsPerUnit` pixels, to the grid.
void snap(float& start, float& length, double pixelsPerUnit) {
    const double steps = stepsPerPixel * pixelsPerUnit;
    const double first = std::round(start * steps);
    const double last = std::round((static_cast<double>(start) + length) * steps);
    start = static_cast<float>(first / steps);
    length = static_cast<float>((last - first) / steps);
}

}  // namespace

FrameComposer::Frame onSubpixelGrid(FrameComposer::Frame frame, int recordingWidth, int recordingHeight) {
    snap(frame.uniforms.b.z, frame.uniforms.c.x, recordingWidth);
    snap(frame.uniforms.b.w, frame.uniforms.c.y, recordingHeight);
    if (frame.cursor) {
        snap(frame.cursor->rect.x, frame.cursor->rect.z, 1);
        snap(frame.cursor->rect.y, frame.cursor->rect.w, 1);
    }
    return frame;
}

}  // namespace tessaloom
