// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/FrameChanges.h"

#include "render/BubbleMask.h"

namespace tessaloom {
namespace {

using Content = std::optional<std::uint64_t>;

bool isKnownToBe(Content before, Content after) {
    return before == after && before != 0U;
}

void add(const std::optional<Rect>& rect, ChangedArea& area) {
    if (rect) area.add(*rect);
}

void addCursor(const FrameComposer::Frame& frame, ChangedArea& area) {
    if (frame.cursor) area.add(toRect(frame.cursor->rect));
}

void addRipples(const FrameComposer::Frame& frame, ChangedArea& area) {
    for (const RippleUniforms& ripple : frame.ripples)
        area.add(toRect(ripple.rect));
}

void addWebcam(const FrameComposer::Frame& frame, ChangedArea& area) {
    if (frame.webcam) area.add(bubbleExtent(*frame.webcam));
}

bool hasSameCamera(const FrameLook& a, const FrameLook& b) {
    return a.frame.webcam == b.frame.webcam && isKnownToBe(a.sources.camera, b.sources.camera) &&
           isKnownToBe(a.sources.matte, b.sources.matte);
}

bool hasSameCaption(const FrameComposer::Frame& a, const FrameComposer::Frame& b) {
    return a.caption == b.caption && a.webcamKeepOut == b.webcamKeepOut;
}

}  // namespace

void addChanges(const FrameLook& before, const FrameLook& after, ChangedArea& area) {
    if (before.frame.uniforms != after.frame.uniforms ||
        !isKnownToBe(before.sources.recording, after.sources.recording)) {
        return area.addAll();
    }
    const bool sameCamera = hasSameCamera(before, after);
    const bool sameCaption = hasSameCaption(before.frame, after.frame);
    for (const FrameLook* look : {&before, &after}) {
        if (before.frame.cursor != after.frame.cursor) addCursor(look->frame, area);
        if (before.frame.ripples != after.frame.ripples) addRipples(look->frame, area);
        if (!sameCamera) addWebcam(look->frame, area);
        if (before.frame.keystroke != after.frame.keystroke) add(look->keystroke, area);
        if (!sameCaption) add(look->caption, area);
    }
}

}  // namespace tessaloom
