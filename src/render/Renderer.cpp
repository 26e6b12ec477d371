// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/Renderer.h"

namespace tessaloom {
namespace {

std::optional<std::uint64_t> contentOf(const SourcePicture& picture) {
    if (picture.pixels.empty()) return std::nullopt;
    return picture.identity;
}

}  // namespace

SourceContents contentsOf(const FrameSources& sources) {
    return {contentOf(sources.recording), contentOf(sources.camera), contentOf(sources.matte)};
}

void Renderer::redraw(const FrameComposer::Frame& frame, const FrameSources& sources, const ShownFrame&,
                      BgraImage& target) {
    render(frame, sources, target);
}

void Renderer::redraw(const FrameComposer::Frame& frame, const FrameSources& sources, const ShownFrame&,
                      YuvImage& target) {
    render(frame, sources, target);
}

}  // namespace tessaloom
