// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ExporterFixture.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "media/ColorConversion.h"
#include "support/PixelAt.h"
#include "take/OpenTake.h"

namespace tessaloom::test {
namespace {

namespace fs = std::filesystem;

constexpr double flashTolerance = 1e-9;

/// Fills so much of `target`, from its top left corner, with the first pixel of `picture`.
void fill(BgraImage& target, int width, int height, const SourcePicture& picture) {
    if (picture.pixels.empty()) return;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            std::memcpy(pixelAt(target, x, y), picture.pixels.row(0), bytesOf(1));
}

}  // namespace

void PlainRenderer::render(const FrameComposer::Frame& frame, const FrameSources& sources,
                           BgraImage& target) {
    ++drawn_;
    fill(target, target.width(), target.height(), sources.recording);
    if (!frame.webcam) return;
    fill(target, target.width() / 2, target.height(), sources.camera);
    fill(target, target.width() / 2, target.height() / 2, sources.matte);
}

void PlainRenderer::render(const FrameComposer::Frame& frame, const FrameSources& sources, YuvImage& target) {
    BgraImage picture(target.width(), target.height());
    render(frame, sources, picture);
    bgraToYuv(picture.view(), target, 0, 0);
}

ExporterTest::ExporterTest() : bundle_(TakeBundle::create(folder_.path() / "a.takes")) {
    fs::create_directory(destination_.parent_path());
}

void ExporterTest::record(std::span<const PlainPicture> pictures) const {
    writeRecordedMovie(bundle_.file(TakeBundle::screenFile), width, height, pictures);
}

void ExporterTest::recordFlash(double duration, double rate, double start, double end) const {
    auto pictures = plainPictures(static_cast<int>(duration * rate), rate, black);
    for (auto& picture : pictures)
        if (picture.time >= start - flashTolerance && picture.time < end - flashTolerance)
            picture.color = white;
    record(pictures);
}

Exporter::Settings ExporterTest::settings(std::vector<TimeSegment> segments) const {
    Exporter::Settings settings;
    settings.segments = std::move(segments);
    settings.makeComposer = [take = OpenTake::open(bundle_)](Size cursor, Point hotspot) {
        return take.composer(cursor, hotspot);
    };
    return settings;
}

Exporter ExporterTest::prepared(const Exporter::Settings& settings) {
    return Exporter::prepare(bundle_, settings, [this] { return std::make_unique<PlainRenderer>(drawn_); });
}

void ExporterTest::run(const Exporter::Settings& settings) {
    prepared(settings).exportVideo(destination_, [](double) {}, {});
}

std::ptrdiff_t ExporterTest::filesAtDestination() const {
    return std::distance(fs::directory_iterator(destination_.parent_path()), {});
}

}  // namespace tessaloom::test
