// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <thread>
#include <vector>

#include "capture/FrameGrid.h"
#include "capture/ScreenStream.h"
#include "media/BgraImage.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11FrameDelivery.h"
#include "platform/x11/X11SourceDamage.h"
#include "platform/x11/X11StreamSource.h"

namespace tessaloom {

/// A display or a window of an X server, read through shared memory whenever the DAMAGE extension reports a
/// change, on a steady grid of at most 60 readings a second that starts with the first frame. While a frame
/// is recorded the next ones are read; only when as many wait as X11FrameDelivery holds is a reading put off.
class X11ScreenStream final : public ScreenStream {
  public:
    /// Windows of ours at `leftAreas` were hidden before.
    X11ScreenStream(std::unique_ptr<X11Connection> connection, const StreamConfiguration& configuration,
                    std::vector<LeftArea> leftAreas = {});
    ~X11ScreenStream() override;
    X11ScreenStream(const X11ScreenStream&) = delete;
    X11ScreenStream& operator=(const X11ScreenStream&) = delete;

    void start(FrameHandler onFrame, StopHandler onStopped) override;
    void stop() override;

  private:
    void run(const std::stop_token& stop);
    void endByItself(const std::string& reason);
    void waitForEvent() const;
    bool handleEvents();
    void note(X11StreamSource::Change change);
    void readDamage(double hostTime);
    bool readPixels(const std::vector<PixelRect>& rects);
    bool readWithBlackMargins();

    std::unique_ptr<X11Connection> connection_;
    StreamConfiguration configuration_;
    std::vector<LeftArea> leftAreas_;
    std::unique_ptr<X11StreamSource> source_;
    std::unique_ptr<X11SourceDamage> damage_;
    std::unique_ptr<X11FrameDelivery> delivery_;
    StopHandler onStopped_;

    bool damaged_ = true;  ///< the server has changes that were not read yet
    bool gone_ = false;    ///< the source is no more
    bool readAll_ = true;  ///< the whole picture counts as changed: at the start, after a resize
    FrameGrid grid_;
    FrameGrid::Change change_ = FrameGrid::Change::hasWaited;
    std::unique_ptr<X11Frame> frame_;  ///< to be read next
    std::jthread thread_;
};

}  // namespace tessaloom
