// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11ScreenStream.h"

#include <poll.h>
#include <xcb/damage.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "base/HostClock.h"
#include "base/Log.h"
#include "platform/x11/DamageRegion.h"

namespace tessaloom {
namespace {

constexpr std::size_t bytesPerPixel = 4;
constexpr std::uint8_t trueColorDepth = 24;

PixelRect wholePicture(const StreamConfiguration& configuration) {
    return {0, 0, configuration.source.width, configuration.source.height};
}

std::size_t byteCount(const PixelRect& rect) {
    return static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height) * bytesPerPixel;
}

bool isInside(const PixelRect& inner, const PixelRect& outer) {
    const PixelRect common = intersection(inner, outer);
    return common.width == inner.width && common.height == inner.height;
}

}  // namespace

/// The server's record of what was drawn since it was last asked.
struct X11ScreenStream::Damage {
    Damage(const X11Connection& xConnection, xcb_window_t window)
        : connection(xConnection),
          firstEvent(xConnection.requireExtension(&xcb_damage_id, "DAMAGE").first_event),
          damage(xcb_generate_id(xConnection)),
          region(xcb_generate_id(xConnection)) {
        xConnection.requireExtension(&xcb_xfixes_id, "XFIXES");
        // The server answers requests of an extension only after its version was asked for.
        const X11Reply<xcb_damage_query_version_reply_t> damageVersion(
            xcb_damage_query_version_reply(connection, xcb_damage_query_version(connection, 1, 1), nullptr));
        const X11Reply<xcb_xfixes_query_version_reply_t> fixesVersion(
            xcb_xfixes_query_version_reply(connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));
        xcb_damage_create(connection, damage, window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
        xcb_xfixes_create_region(connection, region, 0, nullptr);
    }

    const X11Connection& connection;
    std::uint8_t firstEvent;
    xcb_damage_damage_t damage;
    xcb_xfixes_region_t region;
};

X11ScreenStream::X11ScreenStream(std::unique_ptr<X11Connection> connection,
                                 const StreamConfiguration& configuration)
    : connection_(std::move(connection)),
      configuration_(configuration),
      grid_(configuration.minimumFrameInterval) {}

X11ScreenStream::~X11ScreenStream() {
    stop();
}

void X11ScreenStream::start(FrameHandler onFrame, StopHandler onStopped) {
    const auto limit = connection_->limitWaits();
    if (connection_->screen().root_depth != trueColorDepth)
        throw std::runtime_error("The screen doesn't have 24 bits of colour, which recording needs.");
    connection_->requireExtension(&xcb_shm_id, "MIT-SHM");
    source_ = X11StreamSource::open(*connection_, configuration_);
    damage_ = std::make_unique<Damage>(*connection_, source_->damagedWindow());
    delivery_ = std::make_unique<X11FrameDelivery>(*connection_, byteCount(wholePicture(configuration_)),
                                                   std::move(onFrame));
    connection_->requireServer();
    onStopped_ = std::move(onStopped);
    thread_ = std::jthread([this](const std::stop_token& stopToken) { run(stopToken); });
}

void X11ScreenStream::stop() {
    thread_.request_stop();
    connection_->hangUp();
    if (!thread_.joinable()) return;
    delivery_->close();  // it may be waited for
    thread_.join();
    delivery_->finish();
    if (const int times = delivery_->timesBehind(); times > 0)
        qCInfo(Log::screenCapture, "Recording fell behind the screen %d times", times);
}

void X11ScreenStream::run(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        if (!handleEvents()) return endByItself("The recorded window was closed.");
        if (connection_->lost()) {
            // A stop hangs up too.
            if (!stop.stop_requested()) endByItself("The connection to the X server was lost.");
            return;
        }
        const double now = HostClock::seconds();
        const double due = grid_.pointOf(change_, now);
        if (!damaged_) {
            waitForEvent();
            change_ = FrameGrid::Change::cameJustNow;
        } else if (!frame_) {
            frame_ = delivery_->takeEmpty();
        } else if (now < due) {
            std::this_thread::sleep_for(std::chrono::duration<double>(due - now));
            change_ = FrameGrid::Change::hasWaited;
        } else {
            readDamage(due);
            change_ = FrameGrid::Change::hasWaited;
        }
    }
}

void X11ScreenStream::endByItself(const std::string& reason) {
    delivery_->finish();
    onStopped_(reason);
}

/// A still screen costs nothing: only the server, or a stop that hangs up, ends this.
void X11ScreenStream::waitForEvent() const {
    pollfd descriptor{connection_->fileDescriptor(), POLLIN, 0};
    poll(&descriptor, 1, -1);
}

bool X11ScreenStream::handleEvents() {
    while (const auto event = connection_->pollEvent()) {
        if ((event->response_type & 0x7F) == damage_->firstEvent + XCB_DAMAGE_NOTIFY) damaged_ = true;
        note(source_->handle(*event));
    }
    note(source_->afterEvents());
    return !gone_;
}

void X11ScreenStream::note(X11StreamSource::Change change) {
    using Change = X11StreamSource::Change;
    gone_ = gone_ || change == Change::gone;
    readAll_ = readAll_ || change == Change::everything;
    damaged_ = damaged_ || change == Change::everything || change == Change::parts;
}

void X11ScreenStream::readDamage(double hostTime) {
    damaged_ = false;
    const bool all = readAll_;
    const std::vector<PixelRect> damage = takeDamage();
    const PixelRect picture = wholePicture(configuration_);
    const std::vector<PixelRect> rects =
        all ? std::vector{picture} : rectanglesToRead(damage, picture.width, picture.height);
    if (rects.empty()) return;
    const PixelRect available = source_->available();
    if (available.width <= 0 || available.height <= 0) return;  // hidden: its return is announced
    const bool complete =
        std::ranges::all_of(rects, [&](const PixelRect& r) { return isInside(r, available); });
    grid_.taken(hostTime);
    if (!(complete ? readPixels(rects) : readWithBlackMargins())) {
        // The window changed under our hands; the event that says so is on its way.
        readAll_ = damaged_ = true;
        return;
    }
    readAll_ = false;
    // Whatever moved before the pixels were taken has told of it by now: with one of our windows come or
    // gone, they may show it, and are read again.
    if (!handleEvents() || readAll_) return;
    frame_->hostTime = hostTime;
    delivery_->deliver(std::move(frame_));
}

std::vector<PixelRect> X11ScreenStream::takeDamage() {
    xcb_damage_subtract(*connection_, damage_->damage, XCB_NONE, damage_->region);
    const auto cookie = xcb_xfixes_fetch_region(*connection_, damage_->region);
    const X11Reply<xcb_xfixes_fetch_region_reply_t> reply(
        xcb_xfixes_fetch_region_reply(*connection_, cookie, nullptr));
    std::vector<PixelRect> rects;
    if (!reply) return rects;
    const auto* first = xcb_xfixes_fetch_region_rectangles(reply.get());
    const int count = xcb_xfixes_fetch_region_rectangles_length(reply.get());
    for (const xcb_rectangle_t* rect = first; rect != first + count; ++rect) {
        rects.push_back({rect->x - source_->damageOriginX(), rect->y - source_->damageOriginY(), rect->width,
                         rect->height});
    }
    rects = source_->changedBy(std::move(rects));
    std::ranges::copy(source_->takeHiddenDamage(), std::back_inserter(rects));
    return rects;
}

/// All requests go out before the first answer is awaited.
bool X11ScreenStream::readPixels(const std::vector<PixelRect>& rects) {
    frame_->patches.clear();
    source_->prepare(rects);
    std::vector<xcb_shm_get_image_cookie_t> cookies;
    std::size_t offset = 0;
    for (const PixelRect& rect : rects) {
        cookies.push_back(xcb_shm_get_image(
            *connection_, source_->drawable(), static_cast<std::int16_t>(source_->originX() + rect.x),
            static_cast<std::int16_t>(source_->originY() + rect.y), static_cast<std::uint16_t>(rect.width),
            static_cast<std::uint16_t>(rect.height), ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, frame_->pixels.id(),
            static_cast<std::uint32_t>(offset)));
        const auto stride =
            static_cast<std::ptrdiff_t>(rect.width) * static_cast<std::ptrdiff_t>(bytesPerPixel);
        frame_->patches.push_back(
            {{frame_->pixels.data() + offset, rect.width, rect.height, stride}, rect.x, rect.y});
        offset += byteCount(rect);
    }
    bool complete = true;
    for (const auto& cookie : cookies) {
        const X11Reply<xcb_shm_get_image_reply_t> reply(
            xcb_shm_get_image_reply(*connection_, cookie, nullptr));
        complete = complete && reply != nullptr;
    }
    return complete;
}

/// The source is smaller than the picture at present: what it has, on black.
bool X11ScreenStream::readWithBlackMargins() {
    const PixelRect part = source_->available();
    if (!readPixels({part})) return false;
    const BgraView read = frame_->patches.front().pixels;
    const PixelRect picture = wholePicture(configuration_);
    const auto stride = static_cast<std::size_t>(picture.width) * bytesPerPixel;
    const auto partStride = static_cast<std::size_t>(read.stride);
    // The rows spread out within the same memory, so the last ones have to move first.
    for (int y = picture.height - 1; y >= 0; --y) {
        std::uint8_t* row = frame_->pixels.data() + static_cast<std::size_t>(y) * stride;
        const bool hasPixels = y >= part.y && y < part.y + part.height;
        if (!hasPixels) {
            std::memset(row, 0, stride);
            continue;
        }
        const auto left = static_cast<std::size_t>(part.x) * bytesPerPixel;
        std::memmove(row + left, read.row(y - part.y), partStride);
        std::memset(row, 0, left);
        std::memset(row + left + partStride, 0, stride - left - partStride);
    }
    frame_->patches = {
        {{frame_->pixels.data(), picture.width, picture.height, static_cast<std::ptrdiff_t>(stride)}, 0, 0}};
    return true;
}

}  // namespace tessaloom
