// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11ScreenStream.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstring>
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

X11ScreenStream::X11ScreenStream(std::unique_ptr<X11Connection> connection,
                                 const StreamConfiguration& configuration, std::vector<LeftArea> leftAreas)
    : connection_(std::move(connection)),
      configuration_(configuration),
      leftAreas_(std::move(leftAreas)),
      grid_(configuration.minimumFrameInterval) {}

X11ScreenStream::~X11ScreenStream() {
    stop();
}

void X11ScreenStream::start(FrameHandler onFrame, StopHandler onStopped) {
    const auto limit = connection_->limitWaits();
    if (connection_->screen().root_depth != trueColorDepth)
        throw std::runtime_error("The screen doesn't have 24 bits of colour, which recording needs.");
    connection_->requireExtension(&xcb_shm_id, "MIT-SHM");
    source_ = X11StreamSource::open(*connection_, configuration_, leftAreas_);
    damage_ = std::make_unique<X11SourceDamage>(*connection_, source_->damagedWindow());
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
    connection_->flush();
    pollfd descriptor{connection_->fileDescriptor(), POLLIN, 0};
    poll(&descriptor, 1, -1);
}

/// Until none is left: the source asks the server after some of them, and a change that is told of together
/// with the answer would never be told of again.
bool X11ScreenStream::handleEvents() {
    auto event = connection_->pollEvent();
    do {
        for (; event; event = connection_->pollEvent()) {
            if (damage_->isDamageEvent(*event)) damaged_ = true;
            note(source_->handle(*event));
        }
        note(source_->afterEvents());
        event = connection_->pollQueuedEvent();
    } while (event);
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
    const std::vector<PixelRect> damage = damage_->take(*source_);
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

/// All requests go out before the first answer is awaited.
bool X11ScreenStream::readPixels(const std::vector<PixelRect>& rects) {
    frame_->patches.clear();
    source_->prepare(rects);
    std::vector<xcb_shm_get_image_cookie_t> cookies;
    std::size_t offset = 0;
    for (const PixelRect& rect : rects) {
        const PixelRect place{source_->originX() + rect.x, source_->originY() + rect.y, rect.width,
                              rect.height};
        cookies.push_back(frame_->pixels.requestImage(source_->drawable(), place, offset));
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
