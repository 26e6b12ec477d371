// SPDX-License-Identifier: GPL-3.0-or-later
#include <QImage>
#include <QImageReader>

#include "commands/CommandTest.h"
#include "support/MovieMaker.h"
#include "support/MovieProbe.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;

/// How a look that nobody would choose is told from the others.
struct ExtremeLook {
    const char* name;
    std::string edit;
};

std::string captioned(const std::string& text) {
    return R"({"showCaptions": true, "captions": [{"start": 0, "end": 9, "text": ")" + text +
           R"(", "words": [{"text": "a", "start": 0, "end": 9}]}]})";
}

std::string repeated(const std::string& text, std::size_t length) {
    std::string result;
    while (result.size() < length)
        result += text;
    return result;
}

std::string withWallpaper(const char* file) {
    return std::string(R"({"background": {"style": "wallpaper", "primary": ")") + file + "\"}}";
}

std::vector<ExtremeLook> extremeLooks() {
    return {
        {"an enormous wallpaper", withWallpaper("enormous.png")},
        {"a wallpaper that was cut off", withWallpaper("torn.png")},
        {"a wallpaper of other content", withWallpaper("events.json")},
        {"a drawing for a wallpaper", withWallpaper("drawing.svg")},
        {"no wallpaper", withWallpaper("none.png")},
        {"no room for the recording", R"({"padding": 1e9, "shadow": 1, "cornerRadius": 1e9})"},
        {"a crop without width", R"({"crop": {"width": 0, "height": 0}})"},
        {"a caption of 5,000 characters", captioned(repeated("words and ", 5000))},
        {"a word of 5,000 characters", captioned(repeated("x", 5000))},
        {"colours that are none",
         R"({"background": {"style": "gradient", "primary": "#12", "secondary": "blue"},
             "webcam": {"enabled": true, "borderWidth": 1, "borderColor": ""},
             "showCaptions": true, "captions": [{"start": 0, "end": 9, "text": "a"}],
             "captionStyle": {"color": "#GGGGGG", "background": "", "highlightColor": "#1234567"}})"},
        {"a bubble larger than the canvas",
         R"({"aspect": "wide", "webcam": {"enabled": true, "relativeSize": 1e6, "borderWidth": -3,
             "position": {"x": -9, "y": 99}, "blur": 7}})"},
    };
}

class ExtremeLookTest : public CommandTest, public ::testing::WithParamInterface<const char*> {
  protected:
    ExtremeLookTest() {
        environment_["TESSALOOM_RENDERER"] = GetParam();
        writeRecordedMovie(bundle_.file(TakeBundle::webcamFile), 64, 48, plainPictures(1, 1, pureBlue));
        writeRecordedMovie(bundle_.file(TakeBundle::matteFile), 64, 48, plainPictures(1, 1, white));
    }

    void SetUp() override {
        if (frameOf("64x36").errors.find("There is no GPU") != std::string::npos)
            GTEST_SKIP() << "this machine has no Vulkan";
    }

    CommandResult frameOf(const std::string& size) const {
        return run({"frame", "take", "--at", "0.5", "--size", size, "-o", picture_.string()});
    }

    void makeWallpapers() const {
        QImage(20000, 20000, QImage::Format_Mono).save(QString::fromStdString(file("enormous.png")));
        QImage(400, 300, QImage::Format_RGB32).save(QString::fromStdString(file("torn.png")));
        fs::resize_file(file("torn.png"), fs::file_size(file("torn.png")) / 2);
        writeFile(file("drawing.svg"), R"(<svg xmlns="http://www.w3.org/2000/svg"><circle r="4"/></svg>)");
    }

    std::string file(const char* name) const { return bundle_.file(name).string(); }

    TakeBundle bundle_ = makeRecording("take");
    fs::path picture_ = outputs() / "picture.png";
    fs::path film_ = outputs() / "film.mp4";
};

TEST_P(ExtremeLookTest, IsExported) {
    makeWallpapers();
    for (const ExtremeLook& look : extremeLooks()) {
        writeFile(bundle_.file(TakeBundle::editFile), look.edit);
        const CommandResult result = run({"export", "take", "--resolution", "720p", "-o", film_.string()});
        EXPECT_EQ(result.status, 0) << look.name << ": " << result.errors;
        ASSERT_TRUE(fs::exists(film_)) << look.name;
        EXPECT_EQ(probeMovie(film_).packets.size(), 55U) << look.name;
        fs::remove(film_);
    }
}

TEST_P(ExtremeLookTest, IsDrawnOnTheSmallestAndOnVeryLargeCanvases) {
    writeFile(bundle_.file(TakeBundle::editFile), R"({"webcam": {"enabled": true, "blur": 1},
        "showCaptions": true,
        "captions": [{"start": 0, "end": 9, "text": "some words"}]})");
    // A GPU in software takes too long for more.
    const int largest = std::string_view(GetParam()) == "gpu" ? 4096 : 8192;
    for (const int side : {1, largest}) {
        const std::string size = std::to_string(side) + "x" + std::to_string(side);
        const CommandResult result = frameOf(size);
        EXPECT_EQ(result.status, 0) << size << ": " << result.errors;
        EXPECT_EQ(QImageReader(QString::fromStdString(picture_.string())).size(), QSize(side, side));
    }
}

INSTANTIATE_TEST_SUITE_P(EachRenderer, ExtremeLookTest, ::testing::Values("cpu", "gpu"),
                         [](const auto& info) { return std::string(info.param); });

}  // namespace
}  // namespace tessaloom::test
