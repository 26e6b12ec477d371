// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <vector>

#include "core/TakeBundle.h"
#include "export/Exporter.h"
#include "support/BrightFrames.h"
#include "support/MovieMaker.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::test {

/// Fills the canvas with the recording's first pixel, and its left half with the camera's and its upper left
/// quarter with the matte's where the frame shows them. Counts what it draws.
class PlainRenderer : public Renderer {
  public:
    explicit PlainRenderer(int& drawn) : drawn_(drawn) {}

    void render(const FrameComposer::Frame& frame, const FrameSources& sources, BgraImage& target) override;
    void render(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) override;
    void makeCursorTexture(CursorStyle style) override { style_ = style; }
    CursorStyle cursorStyle() const override { return style_; }
    Size cursorImageSize() const override { return {24, 24}; }
    Point cursorHotspot() const override { return {0, 0}; }
    void loadWallpaper(const std::optional<std::filesystem::path>&) override {}
    void prewarmKeystrokes(std::span<const std::string_view>) override {}
    void prewarmCaptions(std::span<const std::string_view>, const CaptionStyle&) override {}

  private:
    int& drawn_;
    CursorStyle style_ = CursorStyle::system;
};

/// Exports a take of plain pictures into an empty folder.
class ExporterTest : public ::testing::Test {
  protected:
    static constexpr int width = 160;
    static constexpr int height = 90;

    ExporterTest();

    void record(std::span<const PlainPicture> pictures) const;
    /// Black, with a white flash that lasts from `start` to `end`.
    void recordFlash(double duration, double rate, double start, double end) const;

    Exporter::Settings settings(std::vector<TimeSegment> segments) const;
    Exporter prepared(const Exporter::Settings& settings);
    void run(const Exporter::Settings& settings);

    std::ptrdiff_t filesAtDestination() const;

    TemporaryFolder folder_;
    TakeBundle bundle_;
    std::filesystem::path destination_ = folder_.path() / "out" / "movie.mp4";
    int drawn_ = 0;
};

}  // namespace tessaloom::test
