// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11Thumbnails.h"

#include <poll.h>
#include <xcb/composite.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

#include "base/Log.h"
#include "capture/ScreenCaptureEngine.h"
#include "platform/x11/DamageRegion.h"
#include "platform/x11/X11SourceDamage.h"
#include "platform/x11/X11StreamSource.h"

namespace tessaloom {
namespace {

constexpr std::chrono::milliseconds interval{250};
/// For the applications to draw what others covered so far.
constexpr std::chrono::milliseconds settling{60};
constexpr int bytesPerPixel = 4;

std::size_t byteCount(const PixelRect& rect) {
    return static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height) * bytesPerPixel;
}

/// In memory of its own, and with the alpha that the server leaves out.
QImage thumbnail(const BgraView& pixels, QSize largest) {
    const QImage whole(pixels.pixels, pixels.width, pixels.height, pixels.stride, QImage::Format_RGB32);
    const QSize fitting = whole.size().scaled(largest, Qt::KeepAspectRatio).expandedTo({1, 1});
    if (fitting.width() >= whole.width()) return whole.convertToFormat(QImage::Format_ARGB32);
    return whole.scaled(fitting, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

/// One of the things whose pictures are made.
struct X11Thumbnails::Subject {
    Subject(const X11Connection& connection, std::size_t number, const ContentFilter& filter,
            const std::vector<LeftArea>& leftAreas)
        : index(number),
          configuration(streamConfiguration({filter, std::nullopt, std::nullopt})),
          source(X11StreamSource::open(connection, configuration, leftAreas)),
          damage(connection, source->damagedWindow()) {}

    void note(X11StreamSource::Change change) {
        isAllNew = isAllNew || change == X11StreamSource::Change::everything;
        isGone = isGone || change == X11StreamSource::Change::gone;
    }

    /// Whether it looks different from when this was last asked.
    bool takeChange() {
        const auto drawn = damage.take(*source);
        const PixelRect visible = source->available();
        const bool isDrawn = std::ranges::any_of(drawn, [&](const PixelRect& rect) {
            const PixelRect part = intersection(rect, visible);
            return part.width > 0 && part.height > 0;
        });
        return std::exchange(isAllNew, false) || isDrawn;
    }

    std::size_t index;
    StreamConfiguration configuration;
    std::unique_ptr<X11StreamSource> source;
    X11SourceDamage damage;
    bool isAllNew = true;
    bool isGone = false;
};

X11Thumbnails::X11Thumbnails(std::unique_ptr<X11Connection> connection, std::vector<ContentFilter> filters,
                             QSize largest, std::vector<LeftArea> leftAreas)
    : connection_(std::move(connection)),
      filters_(std::move(filters)),
      largest_(largest),
      leftAreas_(std::move(leftAreas)) {}

X11Thumbnails::~X11Thumbnails() {
    X11Thumbnails::stop();
}

void X11Thumbnails::start(Handler handler) {
    connection_->requireExtension(&xcb_shm_id, "MIT-SHM");
    connection_->requireExtension(&xcb_composite_id, "Composite");
    keepCoveredPixels();
    for (std::size_t index = 0; index < filters_.size(); ++index) {
        if (auto subject = open(index)) {
            subjects_.push_back(std::move(subject));
        } else {
            gone_.push_back(index);
        }
    }
    makeSharedMemory();
    handler_ = std::move(handler);
    thread_ = std::jthread([this](const std::stop_token& stopToken) { run(stopToken); });
}

void X11Thumbnails::stop() {
    thread_.request_stop();
    connection_->hangUp();
    if (thread_.joinable()) thread_.join();
}

/// The server keeps all windows' pixels from here on, while the right ones are still on the screen. Otherwise
/// a window's picture would begin with what covers it then, and stay so until its application draws.
void X11Thumbnails::keepCoveredPixels() const {
    const auto version = xcb_composite_query_version(*connection_, 0, 4);
    const X11Reply<xcb_composite_query_version_reply_t> answer(
        xcb_composite_query_version_reply(*connection_, version, nullptr));
    xcb_composite_redirect_subwindows(*connection_, connection_->root(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

/// None of what can't be seen, as a window that was closed meanwhile.
std::unique_ptr<X11Thumbnails::Subject> X11Thumbnails::open(std::size_t index) const {
    try {
        return std::make_unique<Subject>(*connection_, index, filters_[index], leftAreas_);
    } catch (const std::exception& error) {
        qCInfo(Log::sourcePicker, "No thumbnail of number %zu: %s", index, error.what());
        return nullptr;
    }
}

void X11Thumbnails::makeSharedMemory() {
    std::size_t most = bytesPerPixel;
    for (const auto& subject : subjects_)
        most = std::max(most, byteCount(subject->configuration.source));
    pixels_ = std::make_unique<X11ShmSegment>(*connection_, most);
}

void X11Thumbnails::run(const std::stop_token& stop) {
    rest(settling, stop);
    for (bool anythingHappened = true; !stop.stop_requested(); anythingHappened = handleEvents()) {
        if (connection_->lost()) return;
        tellGone();
        if (!anythingHappened) {
            waitForEvent();
            continue;
        }
        for (const auto& subject : subjects_) {
            if (subject->takeChange()) deliver(*subject);
        }
        rest(interval, stop);
    }
}

bool X11Thumbnails::handleEvents() {
    bool any = false;
    auto event = connection_->pollEvent();
    do {
        for (; event; event = connection_->pollEvent()) {
            any = true;
            for (const auto& subject : subjects_)
                subject->note(subject->source->handle(*event));
        }
        for (const auto& subject : subjects_)
            subject->note(subject->source->afterEvents());
        event = connection_->pollQueuedEvent();
    } while (event);
    std::erase_if(subjects_, [this](const auto& subject) {
        if (subject->isGone) gone_.push_back(subject->index);
        return subject->isGone;
    });
    return any;
}

void X11Thumbnails::tellGone() {
    for (const std::size_t index : std::exchange(gone_, {}))
        handler_(index, {});
}

void X11Thumbnails::deliver(Subject& subject) const {
    X11StreamSource& source = *subject.source;
    const PixelRect part = source.available();
    if (part.width <= 0 || part.height <= 0) return;  // hidden at present
    source.prepare({part});
    const PixelRect place{source.originX() + part.x, source.originY() + part.y, part.width, part.height};
    const auto cookie = pixels_->requestImage(source.drawable(), place, 0);
    const X11Reply<xcb_shm_get_image_reply_t> reply(xcb_shm_get_image_reply(*connection_, cookie, nullptr));
    if (!reply || reply->size != byteCount(part)) return;  // gone, or not of 32 bits a pixel
    handler_(subject.index,
             thumbnail({pixels_->data(), part.width, part.height, part.width * bytesPerPixel}, largest_));
}

/// Still things cost nothing: only the server, or a stop that hangs up, ends this.
void X11Thumbnails::waitForEvent() const {
    connection_->flush();
    pollfd descriptor{connection_->fileDescriptor(), POLLIN, 0};
    poll(&descriptor, 1, -1);
}

void X11Thumbnails::rest(std::chrono::milliseconds length, const std::stop_token& stop) {
    std::unique_lock guard(restLock_);
    restEnd_.wait_for(guard, stop, length, [] { return false; });
}

}  // namespace tessaloom
