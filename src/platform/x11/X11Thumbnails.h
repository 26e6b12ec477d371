// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "capture/CaptureTarget.h"
#include "capture/ThumbnailSource.h"
#include "platform/x11/LeftArea.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11ShmSegment.h"

namespace tessaloom {

/// Thumbnails of an X server's displays and windows. Only what was drawn to is read again, at most four times
/// a second.
class X11Thumbnails final : public ThumbnailSource {
  public:
    /// Windows of ours at `leftAreas` were hidden before.
    X11Thumbnails(std::unique_ptr<X11Connection> connection, std::vector<ContentFilter> filters,
                  QSize largest, std::vector<LeftArea> leftAreas = {});
    ~X11Thumbnails() override;
    X11Thumbnails(const X11Thumbnails&) = delete;
    X11Thumbnails& operator=(const X11Thumbnails&) = delete;

    void start(Handler handler) override;
    void stop() override;

  private:
    struct Subject;

    void keepCoveredPixels() const;
    std::unique_ptr<Subject> open(std::size_t index) const;
    void makeSharedMemory();
    void run(const std::stop_token& stop);
    bool handleEvents();
    void deliver(Subject& subject) const;
    void waitForEvent() const;
    void rest(std::chrono::milliseconds length, const std::stop_token& stop);

    std::unique_ptr<X11Connection> connection_;
    std::vector<ContentFilter> filters_;
    QSize largest_;
    std::vector<LeftArea> leftAreas_;
    std::vector<std::unique_ptr<Subject>> subjects_;  ///< those that can be seen
    std::unique_ptr<X11ShmSegment> pixels_;           ///< room for any one of them
    Handler handler_;
    std::mutex restLock_;
    std::condition_variable_any restEnd_;
    std::jthread thread_;
};

}  // namespace tessaloom
