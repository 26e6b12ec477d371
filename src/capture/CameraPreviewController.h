// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QQuickView>
#include <memory>

#include "capture/CapturePlatform.h"
#include "capture/WebcamRecorder.h"
#include "motion/FirstEdit.h"

namespace tessaloom {

/// The bubble's size and corner radius in points.
struct BubbleShape {
    QSizeF size;
    double radius = 0;
};

BubbleShape bubbleShape(const CameraChoice& choice);

/// The camera's live picture in a bubble at the bottom right of the main screen, with soft edges and a shadow
/// where windows may be see-through. Main thread.
class CameraPreviewController {
  public:
    explicit CameraPreviewController(CapturePlatform& platform) : platform_(platform) {}
    ~CameraPreviewController() { hide(); }
    CameraPreviewController(const CameraPreviewController&) = delete;
    CameraPreviewController& operator=(const CameraPreviewController&) = delete;

    /// Replaces a bubble that is shown already.
    void show(WebcamRecorder& camera, const CameraChoice& choice);
    void hide();

  private:
    class Feed;

    void makeWindow(const BubbleShape& shape);

    CapturePlatform& platform_;
    std::unique_ptr<QQuickView> window_;
    std::shared_ptr<Feed> feed_;  ///< shared with the camera's thread
};

}  // namespace tessaloom
