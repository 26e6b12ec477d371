// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PictureFile.h"

#include <gtest/gtest.h>

#include <QImage>
#include <filesystem>
#include <fstream>

#include "support/PixelAt.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

class PictureFileTest : public ::testing::Test {
  protected:
    std::filesystem::path written(const char* name, std::string_view content) const {
        auto file = folder_.path() / name;
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }

    /// All in one colour, stored with so many bits a pixel as the format has.
    std::filesystem::path written(const char* name, QSize size, QImage::Format format) const {
        QImage image(size, format);
        image.fill(Qt::white);
        auto file = folder_.path() / name;
        EXPECT_TRUE(image.save(QString::fromStdString(file.string())));
        return file;
    }

  private:
    test::TemporaryFolder folder_;
};

TEST_F(PictureFileTest, IsReadWhateverItsFormat) {
    for (const char* name : {"a.png", "a.jpg", "a.bmp", "a.webp"}) {
        const auto picture = readPictureFile(written(name, {40, 30}, QImage::Format_RGB32));
        ASSERT_TRUE(picture) << name;
        EXPECT_EQ(picture->width(), 40);
        EXPECT_EQ(picture->height(), 30);
        EXPECT_EQ(test::pixelAt(*picture, 20, 15)[1], 255);
    }
}

TEST_F(PictureFileTest, OfEnormousSizeIsRefusedHoweverSmallTheFile) {
    const auto file = written("enormous.png", {20000, 20000}, QImage::Format_Mono);
    EXPECT_LT(std::filesystem::file_size(file), 1'000'000U);
    EXPECT_FALSE(readPictureFile(file));
}

TEST_F(PictureFileTest, OfALargeScreenIsRead) {
    EXPECT_TRUE(readPictureFile(written("large.jpg", {7680, 4320}, QImage::Format_RGB32)));
}

TEST_F(PictureFileTest, CutOffOrOfOtherContentIsRefused) {
    const auto whole = written("whole.png", {40, 30}, QImage::Format_RGB32);
    std::filesystem::resize_file(whole, 45);
    EXPECT_FALSE(readPictureFile(whole)) << "only the header";
    EXPECT_FALSE(readPictureFile(written("words.png", "words, words, words")));
    EXPECT_FALSE(readPictureFile(written("empty.png", "")));
    EXPECT_FALSE(readPictureFile("/nowhere/at/all.png"));
    EXPECT_FALSE(readPictureFile("/"));
}

TEST_F(PictureFileTest, OfDrawingInstructionsIsRefused) {
    const std::string_view circle =
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"><circle r="4"/></svg>)";
    EXPECT_FALSE(readPictureFile(written("drawing.svg", circle)));
    EXPECT_FALSE(readPictureFile(written("drawing.png", circle)));
}

TEST_F(PictureFileTest, OfDrawingInstructionsIsDrawnInTheSizeAskedFor) {
    const auto halves = written(
        "halves.svg",
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="8" height="9">)"
        R"(<rect width="4" height="9" fill="#f00"/><rect x="4" width="4" height="9" fill="#00f"/></svg>)");
    const auto picture = drawPictureFile(halves, 1920, 1080);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width(), 1920);
    EXPECT_EQ(picture->height(), 1080);
    for (const int y : {0, 1079}) {
        EXPECT_EQ(test::pixelAt(*picture, 958, y)[2], 255) << "red up to the middle";
        EXPECT_EQ(test::pixelAt(*picture, 961, y)[0], 255) << "blue from there on";
    }
    EXPECT_FALSE(drawPictureFile(written("torn.svg", "<svg><rect"), 40, 30));
    EXPECT_FALSE(drawPictureFile(written("a.png", {40, 30}, QImage::Format_RGB32), 40, 30));
}

}  // namespace
}  // namespace tessaloom
