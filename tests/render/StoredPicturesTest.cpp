// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QFontInfo>
#include <QImage>
#include <fstream>
#include <optional>

#include "gallery/CameraPicture.h"
#include "gallery/Look.h"
#include "gallery/ScreenPicture.h"
#include "gallery/WallpaperPicture.h"
#include "render/CpuRenderer.h"
#include "render/GpuTestDevice.h"
#include "render/StoredPicture.h"
#include "render/SubpixelGrid.h"
#include "render/SystemFont.h"
#include "support/TemporaryFolder.h"
#include "take/OpenTake.h"

namespace tessaloom {
namespace {

using gallery::Look;

/// Of the stored pictures, in pixels.
constexpr int longSide = 384;

/// Another version of the font library, or a GPU, rounds differently along edges.
constexpr test::Tolerance tolerance{.mean = 0.25, .step = 16, .outliers = 0.001};

BgraView viewOf(const QImage& picture) {
    return {picture.constBits(), picture.width(), picture.height(), picture.bytesPerLine()};
}

/// The gallery's recording, without its movies: the pictures are at hand.
class SampleTake {
  public:
    SampleTake() {
        bundle_.write(gallery::sampleLog());
        // Only its presence counts.
        std::ofstream(bundle_.file(TakeBundle::webcamFile)) << ' ';
        wallpaper_.save(QString::fromStdString(bundle_.file(gallery::wallpaperFile).string()));
    }

    BgraImage draw(const Look& look, Renderer& renderer) const {
        bundle_.write(look.edit);
        const OpenTake take = OpenTake::open(bundle_);
        if (renderer.cursorStyle() != look.edit.cursorStyle)
            renderer.makeCursorTexture(look.edit.cursorStyle);
        renderer.loadWallpaper(take.wallpaper());
        const FrameComposer composer = take.composer(renderer.cursorImageSize(), renderer.cursorHotspot());
        const auto canvas = canvasOf(look, longSide);
        BgraImage target(canvas.width, canvas.height);
        renderer.render(onSubpixelGrid(composer.composeFrame(look.time, canvas.width, canvas.height),
                                       screen_.width(), screen_.height()),
                        {{viewOf(screen_), 1}, {viewOf(camera_), 1}, {viewOf(matte_), 1}}, target);
        return target;
    }

  private:
    test::TemporaryFolder folder_;
    TakeBundle bundle_ = TakeBundle::create(folder_.path() / "sample.takes");
    QImage screen_ = gallery::screenPicture();
    QImage camera_ = gallery::cameraPicture();
    QImage matte_ = gallery::cameraMatte();
    QImage wallpaper_ = gallery::wallpaperPicture();
};

/// By nothing, the CPU; the cursors are the program's own, whichever themes are installed.
class StoredPicturesTest : public ::testing::TestWithParam<std::optional<GpuApi>> {
  protected:
    void SetUp() override {
        ASSERT_EQ(QFontInfo(systemFont(90, QFont::Bold)).family().toStdString(), "DejaVu Sans")
            << "ctest sets FONTCONFIG_FILE to tests/render/fonts.conf";
        if (GetParam())
            renderer_ = test::openGpuRenderer(*GetParam());
        else
            renderer_ = std::make_unique<CpuRenderer>(2, std::vector<std::string>{});
        if (!renderer_) GTEST_SKIP() << "this machine has no " << test::nameOf(*GetParam());
    }

    std::unique_ptr<Renderer> renderer_;
};

std::string nameOf(const std::optional<GpuApi>& api) {
    return api ? test::nameOf(*api) : "Cpu";
}

TEST_P(StoredPicturesTest, EveryLookIsAsItWasApproved) {
    const SampleTake take;
    for (const Look& look : gallery::allLooks())
        EXPECT_TRUE(
            test::isLikeStored(take.draw(look, *renderer_), look.name, nameOf(GetParam()), tolerance));
}

INSTANTIATE_TEST_SUITE_P(EachRenderer, StoredPicturesTest,
                         ::testing::Values(std::nullopt, GpuApi::openGl, GpuApi::vulkan),
                         [](const auto& info) { return nameOf(info.param); });

TEST(StoredPictures, AreFurtherFromEachOtherThanIsTolerated) {
    const std::vector<Look> looks = gallery::allLooks();
    std::vector<BgraImage> pictures;
    for (const Look& look : looks) {
        pictures.push_back(test::storedPicture(look.name));
        ASSERT_FALSE(pictures.back().empty()) << look.name;
    }
    for (std::size_t a = 0; a < looks.size(); ++a) {
        for (std::size_t b = 0; b < a; ++b)
            EXPECT_FALSE(test::isLike(pictures[a], pictures[b], tolerance))
                << looks[a].name << " and " << looks[b].name;
    }
}

}  // namespace
}  // namespace tessaloom
