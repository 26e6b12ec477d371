// SPDX-License-Identifier: GPL-3.0-or-later
#include <QGuiApplication>
#include <QString>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>

#include "core/TakeBundle.h"
#include "gallery/CameraPicture.h"
#include "gallery/Look.h"
#include "gallery/ScreenPicture.h"
#include "gallery/WallpaperPicture.h"
#include "media/ColorConversion.h"
#include "media/MovieWriter.h"

namespace tessaloom::gallery {
namespace {

namespace fs = std::filesystem;

/// Of the canvas, in pixels.
constexpr int longSide = 960;

/// One picture that lasts as long as the recording.
void writeStillMovie(const fs::path& file, const QImage& picture, double seconds) {
    const auto writer =
        MovieWriter::create(file, {.container = MovieWriter::Container::fragmentedMovie,
                                   .video = H264Settings::capture(picture.width(), picture.height())});
    YuvImage image(picture.width(), picture.height());
    bgraToYuv({picture.constBits(), picture.width(), picture.height(), picture.bytesPerLine()}, image, 0, 0);
    writer->appendVideo(image, 0, seconds);
    writer->finish();
}

void writeMedia(const fs::path& folder, double seconds) {
    fs::create_directories(folder);
    writeStillMovie(folder / TakeBundle::screenFile, screenPicture(), seconds);
    writeStillMovie(folder / TakeBundle::webcamFile, cameraPicture(), seconds);
    writeStillMovie(folder / TakeBundle::matteFile, cameraMatte(), seconds);
    if (!wallpaperPicture().save(QString::fromStdString((folder / wallpaperFile).string())))
        throw std::runtime_error("the wallpaper can't be written");
}

/// The same media under another edit.
void writeTake(const fs::path& folder, const fs::path& media, const EventLog& log, const Look& look) {
    const auto bundle = TakeBundle::create(folder / (look.name + std::string(TakeBundle::extension)));
    bundle.write(log);
    bundle.write(look.edit);
    for (const auto& file : fs::directory_iterator(media))
        fs::create_hard_link(file, bundle.url / file.path().filename());
}

void writeTakes(const fs::path& folder) {
    const EventLog log = sampleLog();
    writeMedia(folder / "media", logDuration(log));
    for (const Look& look : allLooks()) {
        writeTake(folder, folder / "media", log, look);
        const CanvasExtent canvas = canvasOf(look, longSide);
        std::printf("%s %g %dx%d\n", look.name.c_str(), look.time, canvas.width, canvas.height);
    }
}

}  // namespace
}  // namespace tessaloom::gallery

/// tessaloom-gallery-takes FOLDER: fills an empty folder with a recording NAME.takes for each look, and
/// prints a line "NAME SECONDS WxH" for each.
int main(int argumentCount, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, arguments);
    if (argumentCount != 2) {
        std::fputs("usage: tessaloom-gallery-takes FOLDER\n", stderr);
        return 2;
    }
    try {
        tessaloom::gallery::writeTakes(arguments[1]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tessaloom-gallery-takes: %s\n", error.what());
        return 1;
    }
}
