// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <utility>

#include "render/CpuRenderer.h"
#include "render/RandomFrame.h"
#include "support/AllocationCounter.h"
#include "support/SamePixels.h"

namespace tessaloom {
namespace {

using test::Chance;

const std::vector<std::string> noThemes;
constexpr std::array<std::string_view, 3> labels{"⇧⌘K", "⎋", "⌃⌥⇧⌘ Space"};
constexpr std::array<std::string_view, 3> lines{"Now click the button", "and", "one  word boxed"};

void nudge(Float4& rect, Chance& chance) {
    rect.x += chance.between(-9, 9);
    rect.y += chance.between(-9, 9);
}

/// A moment of a film that goes from one to the next as films do: mostly little of it changes at a time.
class Film {
  public:
    Film(unsigned seed, int width, int height) : chance_(seed), width_(width), height_(height) {
        newView();
        filmAnew(recording_, 160, 90);
        filmAnew(camera_, 40, 30);
        filmAnew(matte_, 10, 10);
    }

    void advance() {
        if (chance_.oneIn(12)) newView();
        if (chance_.oneIn(12)) filmAnew(recording_, 160, 90);
        if (chance_.oneIn(3)) movePointer();
        if (chance_.oneIn(4)) clickOrAge();
        if (chance_.oneIn(4)) filmAnew(camera_, 40, 30);
        if (chance_.oneIn(6)) filmAnew(matte_, 10, 10);
        if (chance_.oneIn(6)) changeBubble();
        if (chance_.oneIn(5)) changeLabel();
        if (chance_.oneIn(4)) changeCaption();
    }

    const FrameComposer::Frame& frame() const { return frame_; }
    FrameSources sources() const { return {shown(recording_), shown(camera_), shown(matte_)}; }

  private:
    struct Reel {
        BgraImage picture;
        std::uint64_t identity = 0;
    };

    static SourcePicture shown(const Reel& reel) { return {reel.picture.view(), reel.identity}; }

    void newView() {
        frame_.uniforms =
            test::randomComposite(chance_, width_, height_, static_cast<float>(chance_.whole(0, 3)));
    }

    // Now and then it is missing, or its identity is not known.
    void filmAnew(Reel& reel, int width, int height) {
        reel.picture = chance_.oneIn(8) ? BgraImage() : test::randomPicture(chance_, width, height);
        reel.identity = chance_.oneIn(8) ? 0 : ++identity_;
    }

    void movePointer() {
        if (!frame_.cursor || chance_.oneIn(4)) {
            frame_.cursor = test::randomCursor(chance_, frame_.uniforms);
        } else if (chance_.oneIn(6)) {
            frame_.cursor.reset();
        } else {
            nudge(frame_.cursor->rect, chance_);
        }
    }

    void clickOrAge() {
        if (chance_.oneIn(3)) {
            frame_.ripples.clear();
        } else if (chance_.oneIn(2)) {
            frame_.ripples.push_back(test::randomRipple(chance_, frame_.uniforms));
        }
        for (RippleUniforms& ripple : frame_.ripples)
            ripple.params.x = chance_.between(0, 1);
    }

    void changeBubble() {
        if (chance_.oneIn(4)) {
            frame_.webcam.reset();
        } else if (!frame_.webcam || chance_.oneIn(3)) {
            frame_.webcam = test::randomWebcam(chance_, width_, height_);
        } else {
            frame_.webcam->meta.z = chance_.between(0, 1);
        }
        frame_.webcamKeepOut.reset();
        if (frame_.webcam && chance_.oneIn(2)) frame_.webcamKeepOut = toRect(frame_.webcam->rect);
    }

    void changeLabel() {
        frame_.keystroke.reset();
        if (chance_.oneIn(3)) return;
        frame_.keystroke = KeystrokeChip{oneOf(labels), chance_.between(-0.1F, 1)};
    }

    void changeCaption() {
        if (!frame_.caption || chance_.oneIn(4)) {
            CaptionChip& chip = frame_.caption.emplace();
            chip.text = oneOf(lines);
            chip.fontScale = chance_.between(0.5F, 2);
            chip.verticalPosition = chance_.between(0, 1);
            chip.highlight = static_cast<CaptionHighlight>(chance_.whole(0, 2));
            chip.plate = static_cast<CaptionPlate>(chance_.whole(0, 1));
        }
        frame_.caption->alpha = chance_.oneIn(2) ? 1 : chance_.between(-0.1F, 1);
        frame_.caption->activeWord = chance_.whole(-1, 3);
        if (chance_.oneIn(6)) frame_.caption.reset();
    }

    std::string_view oneOf(const std::array<std::string_view, 3>& texts) {
        return texts[static_cast<std::size_t>(chance_.whole(0, 2))];
    }

    Chance chance_;
    int width_;
    int height_;
    std::uint64_t identity_ = 0;
    FrameComposer::Frame frame_;
    Reel recording_;
    Reel camera_;
    Reel matte_;
};

// Draws a film into three targets in turn, each of which shows the frame of three steps before, and compares
// with drawing each frame whole.
template <typename Picture>
void compareFilm(unsigned seed, int width, int height) {
    struct Target {
        Picture picture;
        ShownFrame shown{};
    };
    Film film(seed, width, height);
    CpuRenderer redrawing(2, noThemes);
    CpuRenderer whole(1, noThemes);
    std::array<Target, 3> targets;
    for (Target& target : targets)
        target.picture = Picture(width, height);
    Picture expected(width, height);
    for (std::size_t step = 0; step < 150; ++step) {
        film.advance();
        Target& target = targets[step % targets.size()];
        redrawing.redraw(film.frame(), film.sources(), target.shown, target.picture);
        target.shown = {film.frame(), contentsOf(film.sources())};
        whole.render(film.frame(), film.sources(), expected);
        ASSERT_TRUE(test::samePixels(target.picture, expected)) << "film " << seed << ", step " << step;
    }
}

TEST(RedrawTest, LeavesWhatDrawingTheWholeFrameLeaves) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        compareFilm<BgraImage>(seed, 332, 186);
        compareFilm<YuvImage>(seed, 332, 186);
    }
}

TEST(RedrawTest, LeavesTheSameOnTinyAndNarrowCanvases) {
    for (const auto& [width, height] : {std::pair(2, 2), std::pair(2, 240), std::pair(240, 2)}) {
        compareFilm<BgraImage>(21, width, height);
        compareFilm<YuvImage>(21, width, height);
    }
}

TEST(RedrawTest, LeavesTheSameOnACanvasOfOddSize) {
    compareFilm<BgraImage>(31, 333, 187);
    compareFilm<BgraImage>(32, 1, 1);
}

/// A still view with a pointer on it.
FrameComposer::Frame pointerFrame(float x) {
    FrameComposer::Frame frame;
    frame.uniforms.a = {320, 180, 20, 20};
    frame.uniforms.b = {280, 140, 0, 0};
    frame.uniforms.c = {1, 1, 8, 1};
    frame.cursor = CursorUniforms{{x, 80, 20, 20}, {320, 180, 8, 1}, {20, 20, 280, 140}};
    return frame;
}

TEST(RedrawOfAPointerTest, LeavesTheRestOfTheCanvasAlone) {
    Chance chance(3);
    const BgraImage recording = test::randomPicture(chance, 280, 140);
    const FrameSources sources{{recording.view(), 1}};
    CpuRenderer renderer(1, noThemes);
    BgraImage target(320, 180);
    std::memset(target.row(0), 0x5A, static_cast<std::size_t>(target.stride()) * 180);
    renderer.redraw(pointerFrame(130), sources, {pointerFrame(100), contentsOf(sources)}, target);
    BgraImage whole(320, 180);
    renderer.render(pointerFrame(130), sources, whole);
    for (int y = 0; y < 180; ++y) {
        for (int x = 0; x < 320; ++x) {
            const bool isRedrawn = x >= 100 && x < 150 && y >= 80 && y < 112;
            const std::uint32_t left = 0x5A5A5A5A;
            const void* expected = isRedrawn ? static_cast<const void*>(test::pixelAt(whole, x, y)) : &left;
            ASSERT_EQ(std::memcmp(test::pixelAt(target, x, y), expected, 4), 0) << x << ", " << y;
        }
    }
}

TEST(RedrawOfAPointerTest, AllocatesNothing) {
    Chance chance(4);
    const BgraImage recording = test::randomPicture(chance, 280, 140);
    const FrameSources sources{{recording.view(), 1}};
    CpuRenderer renderer(1, noThemes);
    YuvImage target(320, 180);
    FrameComposer::Frame frame = pointerFrame(60);
    frame.keystroke = KeystrokeChip{labels[0], 1};
    frame.caption.emplace().text = lines[0];
    frame.caption->alpha = 1;
    ShownFrame shown;
    const auto redraw = [&] {
        frame.cursor->rect.x += 7;
        renderer.redraw(frame, sources, shown, target);
        shown.frame = frame;
        shown.sources = contentsOf(sources);
    };
    redraw();
    redraw();
    const test::AllocationCounter counter;
    for (int round = 0; round < 5; ++round)
        redraw();
    EXPECT_EQ(counter.count(), 0U);
}

}  // namespace
}  // namespace tessaloom
