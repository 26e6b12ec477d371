// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/FramePipeline.h"

#include <map>

#include "export/ExporterFixture.h"
#include "media/MediaError.h"
#include "media/MovieReader.h"
#include "media/MovieWriter.h"
#include "render/CpuRenderer.h"
#include "support/FailingFile.h"
#include "support/SamePixels.h"
#include "take/OpenTake.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;

/// Draws every frame whole, whatever its target shows.
class WholeRenderer : public Renderer {
  public:
    void render(const FrameComposer::Frame& frame, const FrameSources& sources, BgraImage& target) override {
        renderer_.render(frame, sources, target);
    }
    void render(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) override {
        renderer_.render(frame, sources, target);
    }
    void makeCursorTexture(CursorStyle style) override { renderer_.makeCursorTexture(style); }
    CursorStyle cursorStyle() const override { return renderer_.cursorStyle(); }
    Size cursorImageSize() const override { return renderer_.cursorImageSize(); }
    Point cursorHotspot() const override { return renderer_.cursorHotspot(); }
    void loadWallpaper(const std::optional<std::filesystem::path>& file) override {
        renderer_.loadWallpaper(file);
    }
    void prewarmKeystrokes(std::span<const std::string_view> texts) override {
        renderer_.prewarmKeystrokes(texts);
    }
    void prewarmCaptions(std::span<const std::string_view> lines, const CaptionStyle& style) override {
        renderer_.prewarmCaptions(lines, style);
    }

  private:
    CpuRenderer renderer_{1};
};

/// Checks that it is told of every target what it drew there last.
class SuspiciousRenderer : public WholeRenderer {
  public:
    void redraw(const FrameComposer::Frame& frame, const FrameSources& sources, const ShownFrame& shown,
                YuvImage& target) override {
        const auto& [last, contents] = drawn_[&target];
        EXPECT_EQ(shown.frame, last);
        EXPECT_EQ(shown.sources.recording, contents.recording);
        EXPECT_EQ(shown.sources.camera, contents.camera);
        EXPECT_EQ(shown.sources.matte, contents.matte);
        render(frame, sources, target);
        drawn_[&target] = {frame, contentsOf(sources)};
    }

    std::size_t targets() const { return drawn_.size(); }

  private:
    std::map<const YuvImage*, ShownFrame> drawn_;
};

/// Keeps a copy of every picture.
template <typename Picture>
class KeepingSink : public FrameSink<Picture> {
  public:
    struct Entry {
        std::int64_t index = 0;
        bool changed = false;
        Picture picture;
    };

    void append(std::int64_t index, const Picture& picture, FrameChange change) override {
        entries.push_back({index, change != FrameChange::none, copyOf(picture)});
    }

    std::vector<Entry> entries;

  private:
    static YuvImage copyOf(const YuvImage& picture) { return picture; }
    static BgraImage copyOf(const BgraImage& picture) {
        BgraImage copy;
        copyPixels(picture.view(), copy);
        return copy;
    }
};

/// A short take in which everything that a frame may show comes, moves and goes: a zoom, pointer, clicks, key
/// labels, captions word by word, and a camera that has its own pictures and is hidden for a while.
class FramePipelineTest : public ExporterTest {
  protected:
    FramePipelineTest() {
        EventLog log;
        log.captureRect = {.x = 0, .y = 0, .width = width, .height = height, .displayScaleFactor = 1};
        for (int sample = 0; sample <= 480; ++sample) {
            const double t = sample / 120.0;
            const double moved = t > 0.5 && t < 3 ? t : (t < 2 ? 0.5 : 3);
            log.cursorSamples.push_back({.pts = t, .x = 0.1 + 0.25 * moved, .y = 0.9 - 0.2 * moved});
        }
        using enum InputEvent::EventType;
        log.events = {{0.9, leftClick, RelativePoint{0.3, 0.7}, std::nullopt},
                      {1.1, leftClick, RelativePoint{0.4, 0.65}, std::nullopt},
                      {1.2, keyDown, std::nullopt, "⌃S"},
                      {2.0, keyDown, std::nullopt, "⌃⌥K"}};
        bundle_.write(log);
        ZoomKeyframe zoom;
        zoom.startPTS = 2.6;
        zoom.endPTS = 3.4;
        zoom.targetRect = {0.2, 0.1, 0.5, 0.5};
        edit_.zoomKeyframes = {zoom};
        edit_.padding = 10;
        edit_.webcam = {.enabled = true, .position = {0.7, 0.6}, .borderWidth = 0.02, .blur = 0.4};
        edit_.cameraHiddenRanges = {{2.2, 2.7}};
        edit_.showCaptions = true;
        edit_.captions = {{0.3, 1.5, "now click", {{"now", 0.3, 0.8}, {"click", 0.8, 1.5}}},
                          {1.6, 2.4, "and type", {{"and", 1.6, 2}, {"type", 2, 2.4}}}};
        bundle_.write(edit_);
        record(std::vector<PlainPicture>{{0, pureBlue}, {1.4, pureGreen}, {1.45, pureBlue}});
        film(TakeBundle::webcamFile, std::vector<PlainPicture>{{0, pureRed}, {0.7, white}, {1.8, pureRed}});
        film(TakeBundle::matteFile, std::vector<PlainPicture>{{0, white}, {1, black}});
    }

    void film(std::string_view file, std::span<const PlainPicture> pictures) const {
        writeRecordedMovie(bundle_.file(file), 64, 48, pictures);
    }

    /// Large pictures at 60 a second, which takes long to decode and not to write.
    static void recordStillMovie(const fs::path& movie, double duration) {
        const auto writer =
            MovieWriter::create(movie, {.container = MovieWriter::Container::fragmentedMovie,
                                        .video = H264Settings::exported(1280, 720, 5'000'000)});
        const YuvImage picture = plainYuv(1280, 720, pureBlue);
        for (int n = 0; n < static_cast<int>(duration * 60); ++n)
            writer->appendVideo(picture, n / 60.0, 1 / 60.0, PictureMotion::none);
        writer->finish();
    }

    template <typename Picture>
    auto drawnBy(Renderer& renderer) const {
        const OutputTimeline timeline(std::vector<TimeSegment>{{0, 4}}, 1, 60);
        TakeMovies movies = TakeMovies::open(bundle_, edit_.webcam, timeline.sourceRange());
        const FrameComposer composer =
            OpenTake::open(bundle_).composer(renderer.cursorImageSize(), renderer.cursorHotspot());
        KeepingSink<Picture> sink;
        FramePipeline<Picture> pipeline({.movies = movies,
                                         .timeline = timeline,
                                         .composer = composer,
                                         .renderer = renderer,
                                         .canvas = {320, 180},
                                         .sink = sink});
        pipeline.run([](double) {}, {});
        return std::move(sink.entries);
    }

    void drawPlainly(TakeMovies& movies, const OutputTimeline& timeline,
                     const std::function<void(double)>& progress, const std::stop_token& stop) {
        PlainRenderer renderer(drawn_);
        const FrameComposer composer = OpenTake::open(bundle_).composer({}, {});
        KeepingSink<YuvImage> sink;
        FramePipeline<YuvImage> pipeline({.movies = movies,
                                          .timeline = timeline,
                                          .composer = composer,
                                          .renderer = renderer,
                                          .canvas = {64, 36},
                                          .sink = sink});
        pipeline.run(progress, stop);
    }

    template <typename Picture>
    void expectTheSamePictures() const {
        CpuRenderer redrawing(2);
        WholeRenderer whole;
        const auto drawn = drawnBy<Picture>(redrawing);
        const auto expected = drawnBy<Picture>(whole);
        ASSERT_EQ(drawn.size(), 240U);
        ASSERT_EQ(expected.size(), drawn.size());
        int changed = 0;
        for (std::size_t i = 0; i < drawn.size(); ++i) {
            EXPECT_EQ(drawn[i].index, expected[i].index);
            EXPECT_EQ(drawn[i].changed, expected[i].changed) << "frame " << i;
            changed += drawn[i].changed ? 1 : 0;
            ASSERT_TRUE(samePixels(drawn[i].picture, expected[i].picture)) << "frame " << i;
        }
        EXPECT_GT(changed, 150) << "little happens in the take";
    }

    EditParams edit_;
};

TEST_F(FramePipelineTest, HandsAMovieTheSamePicturesAsIfEachWereDrawnWhole) {
    expectTheSamePictures<YuvImage>();
}

TEST_F(FramePipelineTest, TellsOfEachTargetWhatItShows) {
    SuspiciousRenderer renderer;
    drawnBy<YuvImage>(renderer);
    EXPECT_LE(renderer.targets(), 4U) << "buffers come round";
}

TEST_F(FramePipelineTest, HandsAGIFTheSamePicturesAsIfEachWereDrawnWhole) {
    expectTheSamePictures<BgraImage>();
}

TEST_F(FramePipelineTest, StoppingIsHeardWhileALongCutIsCrossed) {
    constexpr double duration = 900;
    const auto movie = bundle_.file(TakeBundle::screenFile);
    recordStillMovie(movie, duration);
    // A recording that was killed has no index: a cut has to be read through.
    fs::resize_file(movie, fs::file_size(movie) - 200);
    const OutputTimeline timeline(std::vector<TimeSegment>{{0, 0.01}, {duration - 1, duration}}, 1, 60);
    TakeMovies movies = TakeMovies::open(bundle_, {}, timeline.sourceRange());
    std::stop_source stop;
    EXPECT_THROW(drawPlainly(
                     movies, timeline, [&](double) { stop.request_stop(); }, stop.get_token()),
                 ExportCancelled);
    EXPECT_LT(movies.recording.frame(0)->time(), duration - 10);
}

TEST_F(FramePipelineTest, ADiskThatFailsEndsItWithItsError) {
    const auto movie = bundle_.file(TakeBundle::screenFile);
    record(plainPictures(600, 60, pureBlue));
    const OutputTimeline timeline(std::vector<TimeSegment>{{0, 10}}, 1, 60);
    TakeMovies movies = TakeMovies::open(bundle_, {}, timeline.sourceRange());
    const FailingFile failing(movie, fs::file_size(movie) / 2);
    movies.recording = HeldFrameReader(MovieReader::open(failing.name()));
    EXPECT_THROW(drawPlainly(movies, timeline, [](double) {}, {}), UnreadableMovie);
}

}  // namespace
}  // namespace tessaloom::test
