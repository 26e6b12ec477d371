// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QQuickView>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "capture/CapturePlatform.h"
#include "capture/ChooserEntry.h"
#include "capture/ChooserLayout.h"
#include "capture/ChooserModel.h"

namespace tessaloom {

/// One choice among all that can be recorded: a sheet over the screen that the pointer is on, with a live
/// picture of each, until the user has picked one or cancelled. Main thread.
class ChooserHost : public QObject {
    Q_OBJECT

  public:
    /// Called once: with what was picked, or nothing.
    using Done = std::function<void(std::optional<ContentFilter>)>;

    /// Throws CaptureError or std::runtime_error when it can't be shown.
    ChooserHost(CapturePlatform& platform, Done done);

    /// Ends the choice; without effect once it has ended.
    void finish(std::optional<ContentFilter> picked);

  protected:
    bool eventFilter(QObject* window, QEvent* event) override;

  private Q_SLOTS:
    void pick(int index);
    void cancel();

  private:
    void makeWindow(QScreen* screen);
    void startThumbnails(CapturePlatform& platform, double pixelsPerPoint);

    std::vector<ChooserEntry> entries_;
    Done done_;
    ChooserLayout layout_;
    std::unique_ptr<QQuickView> window_;
    ChooserModel* model_ = nullptr;                ///< the window's
    std::unique_ptr<ThumbnailSource> thumbnails_;  ///< after the window, whose model it fills
    bool finished_ = false;
};

}  // namespace tessaloom
