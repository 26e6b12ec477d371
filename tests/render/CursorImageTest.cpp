// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CursorImage.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <cmath>
#include <cstdint>
#include <fstream>

#include "support/PixelAt.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

const std::vector<std::string> noThemes;

std::uint8_t alphaAt(const CursorImage& cursor, Point point) {
    const double scale = cursor.pixels.width() / cursor.size.width;
    return test::pixelAt(cursor.pixels, static_cast<int>(point.x * scale),
                         static_cast<int>(point.y * scale))[3];
}

TEST(CursorImageTest, DrawsEveryStyleWithoutATheme) {
    for (const CursorStyle style :
         {CursorStyle::system, CursorStyle::hand, CursorStyle::large, CursorStyle::dot, CursorStyle::ring}) {
        const CursorImage cursor = makeCursorImage(style, noThemes);
        EXPECT_GE(cursor.pixels.width(), 2 * 24);
        EXPECT_GT(cursor.hotspot.x, 0);
        EXPECT_LT(cursor.hotspot.x, cursor.size.width);
        EXPECT_LT(cursor.hotspot.y, cursor.size.height);
        for (int y = 0; y < cursor.pixels.height(); ++y) {
            for (int x = 0; x < cursor.pixels.width(); ++x) {
                const std::uint8_t* pixel = test::pixelAt(cursor.pixels, x, y);
                for (int channel = 0; channel < 3; ++channel) {
                    ASSERT_LE(pixel[channel], pixel[3]) << "not premultiplied";
                }
            }
        }
    }
}

TEST(CursorImageTest, PointsWithTheTipOfTheDrawnArrow) {
    const CursorImage arrow = makeCursorImage(CursorStyle::system, noThemes);
    const Point tip = arrow.hotspot;
    EXPECT_EQ(arrow.size, (Size{24, 24}));
    EXPECT_EQ(alphaAt(arrow, {tip.x + 0.5, tip.y + 2}), 255) << "the body hangs down from the tip";
    EXPECT_LT(alphaAt(arrow, {tip.x - 2.5, tip.y - 2.5}), 40) << "nothing lies above it";
    EXPECT_EQ(alphaAt(arrow, {23, 2}), 0);
}

TEST(CursorImageTest, PointsWithTheFingerOfTheDrawnHand) {
    const CursorImage hand = makeCursorImage(CursorStyle::hand, noThemes);
    EXPECT_EQ(alphaAt(hand, {hand.hotspot.x, hand.hotspot.y + 1}), 255);
    EXPECT_LT(alphaAt(hand, {hand.hotspot.x, hand.hotspot.y - 2.2}), 40);
}

TEST(CursorImageTest, LargeIsTheArrowDeclaredBigger) {
    const CursorImage arrow = makeCursorImage(CursorStyle::system, noThemes);
    const CursorImage large = makeCursorImage(CursorStyle::large, noThemes);
    EXPECT_EQ(large.pixels.width(), arrow.pixels.width());
    EXPECT_EQ(large.size, (Size{arrow.size.width * 1.7, arrow.size.height * 1.7}));
    EXPECT_EQ(large.hotspot, (Point{arrow.hotspot.x * 1.7, arrow.hotspot.y * 1.7}));
}

TEST(CursorImageTest, DotIsAWhiteDiscWithADarkRim) {
    const CursorImage dot = makeCursorImage(CursorStyle::dot, noThemes);
    EXPECT_EQ(dot.size, (Size{26, 26}));
    EXPECT_EQ(dot.hotspot, (Point{13, 13}));
    EXPECT_EQ(dot.pixels.width(), 52);
    EXPECT_NEAR(alphaAt(dot, {13, 13}), 0.92 * 255, 1);
    EXPECT_NEAR(test::pixelAt(dot.pixels, 26, 26)[0], 0.92 * 255, 1);
    EXPECT_NEAR(alphaAt(dot, {13, 3.5}), 0.55 * 255, 2) << "the rim's outer half lies on nothing";
    EXPECT_EQ(alphaAt(dot, {13, 2.4}), 0);
}

TEST(CursorImageTest, RingIsHollow) {
    const CursorImage ring = makeCursorImage(CursorStyle::ring, noThemes);
    EXPECT_EQ(ring.size, (Size{26, 26}));
    EXPECT_EQ(ring.hotspot, (Point{13, 13}));
    EXPECT_EQ(alphaAt(ring, {13, 13}), 0);
    // White of 0.95 over black of 0.5 in the middle of the line.
    const std::uint8_t* line = test::pixelAt(ring.pixels, 26, 8);
    EXPECT_NEAR(line[0], 0.95 * 255, 2);
    EXPECT_NEAR(line[3], (0.95 + 0.05 * 0.5) * 255, 2);
    EXPECT_NEAR(alphaAt(ring, {13, 1.6}), 0.5 * 255, 2) << "the dark line is wider than the white one";
}

void writeWord(std::ofstream& file, std::uint32_t word) {
    for (int shift = 0; shift < 32; shift += 8)
        file.put(static_cast<char>(word >> shift & 0xFF));
}

/// A theme image: one opaque colour per nominal size, its tip at a place scaled with it.
struct ThemeImage {
    std::uint32_t nominal;
    std::uint32_t side;
    std::uint32_t tip;
    std::uint32_t color;
};

// The X cursor file format: header, table of contents, image chunks (see Xcursor(3)).
void writeCursorFile(const std::filesystem::path& path, const std::vector<ThemeImage>& images) {
    constexpr std::uint32_t magic = 0x72756358, imageType = 0xfffd0002;
    std::ofstream file(path, std::ios::binary);
    const auto count = static_cast<std::uint32_t>(images.size());
    for (const std::uint32_t word : {magic, 16U, 0x10000U, count})
        writeWord(file, word);
    std::uint32_t position = 16 + 12 * count;
    for (const ThemeImage& image : images) {
        for (const std::uint32_t word : {imageType, image.nominal, position})
            writeWord(file, word);
        position += 36 + image.side * image.side * 4;
    }
    for (const ThemeImage& image : images) {
        for (const std::uint32_t word :
             {36U, imageType, image.nominal, 1U, image.side, image.side, image.tip, image.tip, 0U}) {
            writeWord(file, word);
        }
        for (std::uint32_t i = 0; i < image.side * image.side; ++i)
            writeWord(file, image.color);
    }
}

/// Makes libXcursor look for themes in a folder of ours. It reads its path once per process.
class ThemeFolder {
  public:
    ThemeFolder() { qputenv("XCURSOR_PATH", folder_.path().c_str()); }

    void add(const std::string& theme, const std::string& name, const std::vector<ThemeImage>& images) const {
        const std::filesystem::path cursors = folder_.path() / theme / "cursors";
        std::filesystem::create_directories(cursors);
        writeCursorFile(cursors / name, images);
    }

  private:
    test::TemporaryFolder folder_;
};

TEST(CursorThemeTest, GivesTheSizeInPointsAndTheSharpestPixels) {
    static const ThemeFolder folder;
    folder.add("sharp", "left_ptr",
               {{24, 24, 3, 0xFF0000FF}, {48, 48, 7, 0xFF00FF00}, {96, 96, 14, 0xFFFF0000}});
    folder.add("small", "hand2", {{24, 20, 5, 0xFFFFFFFF}});
    folder.add("other", "default", {{24, 24, 1, 0xFFFFFFFF}});

    const CursorImage sharp = makeCursorImage(CursorStyle::system, std::vector<std::string>{"sharp"});
    EXPECT_EQ(sharp.size, (Size{24, 24}));
    EXPECT_EQ(sharp.pixels.width(), 96);
    EXPECT_EQ(sharp.hotspot, (Point{3.5, 3.5})) << "from the big image, to a fraction of a point";
    EXPECT_EQ(test::pixelAt(sharp.pixels, 50, 50)[2], 255) << "red of the big image";

    const CursorImage small = makeCursorImage(CursorStyle::hand, std::vector<std::string>{"sharp", "small"});
    EXPECT_EQ(small.size, (Size{20, 20})) << "the next theme's, since the first has no hand";
    EXPECT_EQ(small.hotspot, (Point{5, 5}));

    const CursorImage other = makeCursorImage(CursorStyle::system, std::vector<std::string>{"none", "other"});
    EXPECT_EQ(other.hotspot, (Point{1, 1})) << "by its second name";
}

TEST(CursorThemeTest, IsTheUsersBeforeTheDesktops) {
    qputenv("XCURSOR_THEME", "mine");
    EXPECT_EQ(cursorThemes().front(), "mine");
    EXPECT_EQ(cursorThemes().at(1), "default");
    qunsetenv("XCURSOR_THEME");
    EXPECT_EQ(cursorThemes().front(), "default");
}

}  // namespace
}  // namespace tessaloom
