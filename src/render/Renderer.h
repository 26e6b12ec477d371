// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

#include "core/CaptionStyle.h"
#include "core/CursorStyle.h"
#include "core/Geometry.h"
#include "media/BgraImage.h"
#include "media/YuvImage.h"
#include "render/FrameComposer.h"

namespace tessaloom {

/// A video frame on loan for one `render` call.
struct SourcePicture {
    /// Opaque. May be empty, which for the recording shows as black.
    BgraView pixels;
    /// Another number for every other content, so that what was derived from a picture can be kept; 0 says
    /// nothing is known.
    std::uint64_t identity = 0;
};

/// The pictures that one frame is made from.
struct FrameSources {
    SourcePicture recording;
    /// Without it there is no camera bubble.
    SourcePicture camera{};
    /// White where the camera shows a person, black behind; without it the camera is not blurred.
    SourcePicture matte{};
};

/// Which pictures a frame was made from: their identities, or nothing where there is no picture.
struct SourceContents {
    std::optional<std::uint64_t> recording;
    std::optional<std::uint64_t> camera;
    std::optional<std::uint64_t> matte;
};

SourceContents contentsOf(const FrameSources& sources);

/// What a target shows, so that another frame can be drawn over it where it differs. A default one says that
/// nothing is known.
struct ShownFrame {
    FrameComposer::Frame frame;
    SourceContents sources;
};

/// Key labels and captions fainter than this are not drawn.
constexpr float leastChipAlpha = 0.001F;

/// Draws composed frames. It never decides what a frame shows: that is FrameComposer's. One task at a time
/// may use it. Text and cursors are drawn by Qt, so the first needs a QGuiApplication to exist.
class Renderer {
  public:
    virtual ~Renderer() = default;

    /// Draws every pixel of `target`, whose size is the frame's canvas. The result is opaque. Parts whose
    /// pictures are missing are left out; nothing else can fail.
    virtual void render(const FrameComposer::Frame& frame, const FrameSources& sources,
                        BgraImage& target) = 0;

    /// The same picture, converted as `bgraToYuv` does.
    virtual void render(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) = 0;

    /// The same as `render`, for a target of which `shown` tells what `render` or `redraw` left there last;
    /// may leave pixels alone that stay the same. Between the two calls neither wallpaper nor cursor image
    /// were replaced, and both frames' composer lives unchanged.
    virtual void redraw(const FrameComposer::Frame& frame, const FrameSources& sources,
                        const ShownFrame& shown, BgraImage& target);
    virtual void redraw(const FrameComposer::Frame& frame, const FrameSources& sources,
                        const ShownFrame& shown, YuvImage& target);

    /// Replaces the cursor image. Starts as `CursorStyle::system`.
    virtual void makeCursorTexture(CursorStyle style) = 0;
    virtual CursorStyle cursorStyle() const = 0;
    /// In points, for FrameComposer.
    virtual Size cursorImageSize() const = 0;
    virtual Point cursorHotspot() const = 0;

    /// Reads the wallpaper unless it is the one read last; a file that can't be read leaves a plain dark
    /// backdrop.
    virtual void loadWallpaper(const std::optional<std::filesystem::path>& file) = 0;

    /// Rasters these key labels now (main thread), so that no frame has to wait for it.
    virtual void prewarmKeystrokes(std::span<const std::string_view> texts) = 0;
    /// The same for caption lines and, where they are boxed, their words.
    virtual void prewarmCaptions(std::span<const std::string_view> lines, const CaptionStyle& style) = 0;
};

}  // namespace tessaloom
