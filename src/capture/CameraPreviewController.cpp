// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CameraPreviewController.h"

#include <QGuiApplication>
#include <QScreen>
#include <mutex>

#include "capture/OverlayWindow.h"
#include "capture/PictureItem.h"

namespace tessaloom {
namespace {

/// The bubble's distance from the edges of the screen, in points.
constexpr int margin = 24;

/// How far its shadow reaches.
constexpr int shadowReach = 20;

/// The middle of the picture, in the bubble's shape and size. Its fourth byte is dropped: from a camera it
/// means nothing, on a screen with a compositing manager it would be taken for its opacity.
QImage croppedToFill(const BgraView& picture, QSize size, bool mirrored) {
    const QImage whole(picture.pixels, picture.width, picture.height, picture.stride, QImage::Format_RGB32);
    QRect part(QPoint(), size.scaled(whole.size(), Qt::KeepAspectRatio));
    part.moveCenter(whole.rect().center());
    return whole.copy(part)
        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .mirrored(mirrored, false)
        .convertToFormat(QImage::Format_RGB888);
}

}  // namespace

BubbleShape bubbleShape(const CameraChoice& choice) {
    const double width = choice.relativeSize * 300 + 120;
    switch (choice.shape) {
        case WebcamConfig::Shape::circle:
            break;
        case WebcamConfig::Shape::pill:
            return {{width, 0.62 * width}, 0.31 * width};
        case WebcamConfig::Shape::rectangle:
            return {{width, 0.66 * width}, 0.16 * width};
    }
    return {{width, width}, 0.5 * width};
}

/// Takes pictures from the camera's thread to the bubble, one at a time: what comes while one is on its way
/// is left out.
class CameraPreviewController::Feed {
  public:
    Feed(PictureItem* bubble, QSize pixels, bool mirrored)
        : bubble_(bubble), pixels_(pixels), mirrored_(mirrored) {}

    /// The bubble may go when this returns.
    void close() {
        const std::lock_guard guard(lock_);
        bubble_ = nullptr;
    }

    /// The camera's thread.
    void receive(const CameraPicture& picture) {
        const std::lock_guard guard(lock_);
        if (bubble_ == nullptr || onItsWay_) return;
        onItsWay_ = true;
        const QImage image = croppedToFill(picture.pixels, pixels_, mirrored_);
        QMetaObject::invokeMethod(
            bubble_, [this, image] { show(image); }, Qt::QueuedConnection);
    }

  private:
    /// Main thread, and only as long as the bubble lives.
    void show(const QImage& image) {
        const std::lock_guard guard(lock_);
        onItsWay_ = false;
        if (bubble_ != nullptr) bubble_->setImage(image);
    }

    std::mutex lock_;  ///< guards what follows
    PictureItem* bubble_;
    QSize pixels_;
    bool mirrored_;
    bool onItsWay_ = false;
};

void CameraPreviewController::show(WebcamRecorder& camera, const CameraChoice& choice) {
    hide();
    const BubbleShape shape = bubbleShape(choice);
    makeWindow(shape);
    auto* bubble = window_->rootObject()->findChild<PictureItem*>("bubble");
    const QSize pixels = shape.size.toSize() * QGuiApplication::primaryScreen()->devicePixelRatio();
    feed_ = std::make_shared<Feed>(bubble, pixels, choice.mirrored);
    camera.setPreview([feed = feed_](const CameraPicture& picture) { feed->receive(picture); });
    window_->show();
    window_->raise();
}

/// A mask has hard edges, and room for the shadow would be black: both depend on what the desktop can do.
void CameraPreviewController::makeWindow(const BubbleShape& shape) {
    const int shadow = platform_.blendsWindows() ? shadowReach : 0;
    const QSize size = shape.size.toSize();
    window_ = makeOverlayWindow("CameraPreview.qml", size.grownBy({shadow, shadow, shadow, shadow}),
                                {{"radius", shape.radius}, {"shadow", shadow}});
    if (shadow == 0) window_->setMask(roundedRegion(QRect(QPoint(), size), shape.radius));
    const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
    window_->setPosition(free.x() + free.width() - size.width() - margin - shadow,
                         free.y() + free.height() - size.height() - margin - shadow);
}

void CameraPreviewController::hide() {
    if (feed_) feed_->close();
    feed_.reset();
    window_.reset();
}

}  // namespace tessaloom
