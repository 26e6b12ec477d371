// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11CapturePlatform.h"

#include <cmath>

#include "capture/CaptureError.h"
#include "capture/SourceChooser.h"
#include "platform/desktop/DesktopWallpaper.h"
#include "platform/x11/X11BeneathWindows.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11InputSource.h"
#include "platform/x11/X11PointerSource.h"
#include "platform/x11/X11Reply.h"
#include "platform/x11/X11ScreenStream.h"
#include "platform/x11/X11ShareableContent.h"
#include "platform/x11/X11Thumbnails.h"
#include "platform/x11/X11Wallpaper.h"

namespace tessaloom {
namespace {

constexpr int preflightSide = 16;

std::int16_t inPixels(double points, double scale) {
    return static_cast<std::int16_t>(std::lround(points * scale));
}

}  // namespace

bool X11CapturePlatform::isThere() {
    try {
        return X11Connection::open() != nullptr;
    } catch (const CaptureError&) {
        return false;
    }
}

ShareableContent X11CapturePlatform::shareableContent() {
    const auto connection = X11Connection::open();
    const auto limit = connection->limitWaits();
    return readShareableContent(*connection);
}

ContentFilter X11CapturePlatform::withPresentFrame(const ContentFilter& filter) {
    if (!filter.window) return filter;
    const auto connection = X11Connection::open();
    const auto limit = connection->limitWaits();
    const auto frame = windowFrame(*connection, *filter.window, filter.pointPixelScale);
    return {filter.window, frame.value_or(filter.contentRect), filter.pointPixelScale};
}

bool X11CapturePlatform::takePreflightPicture(const ContentFilter& filter) {
    const auto connection = X11Connection::open();
    const auto limit = connection->limitWaits();
    const double scale = filter.pointPixelScale;
    const std::int16_t x = filter.window ? std::int16_t{0} : inPixels(filter.contentRect.x, scale);
    const std::int16_t y = filter.window ? std::int16_t{0} : inPixels(filter.contentRect.y, scale);
    const auto cookie =
        xcb_get_image(*connection, XCB_IMAGE_FORMAT_Z_PIXMAP, filter.window.value_or(connection->root()), x,
                      y, preflightSide, preflightSide, ~0U);
    return X11Reply<xcb_get_image_reply_t>(xcb_get_image_reply(*connection, cookie, nullptr)) != nullptr;
}

bool X11CapturePlatform::leavesOutOwnWindows() {
    const auto connection = X11Connection::open();
    const auto limit = connection->limitWaits();
    return X11BeneathWindows::isPossible(*connection);
}

BgraImage X11CapturePlatform::wallpaper(const DesktopScreen& screen) {
    if (auto picture = desktopWallpaper(screen)) return std::move(*picture);
    const auto connection = X11Connection::open();
    const auto limit = connection->limitWaits();
    return readWallpaper(*connection, screen.area);
}

std::unique_ptr<ScreenStream> X11CapturePlatform::makeScreenStream(const StreamConfiguration& configuration) {
    return std::make_unique<X11ScreenStream>(X11Connection::open(), configuration, hiddenWindows_.areas());
}

std::unique_ptr<PointerSource> X11CapturePlatform::makePointerSource() {
    auto connection = X11Connection::open();
    const auto limit = connection->limitWaits();
    const double scale = pointPixelScale(*connection);
    return std::make_unique<X11PointerSource>(std::move(connection), scale);
}

std::unique_ptr<InputEventSource> X11CapturePlatform::makeInputEventSource() {
    return std::make_unique<X11InputSource>(X11Connection::open());
}

std::unique_ptr<SourcePicker> X11CapturePlatform::makeSourcePicker() {
    return std::make_unique<SourceChooser>(*this);
}

std::unique_ptr<ThumbnailSource> X11CapturePlatform::makeThumbnailSource(
    const std::vector<ContentFilter>& filters, QSize largest) {
    return std::make_unique<X11Thumbnails>(X11Connection::open(), filters, largest, hiddenWindows_.areas());
}

}  // namespace tessaloom
