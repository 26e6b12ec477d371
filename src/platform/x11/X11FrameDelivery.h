// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "capture/ScreenStream.h"
#include "platform/x11/X11ShmSegment.h"

namespace tessaloom {

/// A frame in shared memory of its own.
struct X11Frame {
    X11Frame(const X11Connection& connection, std::size_t byteCount) : pixels(connection, byteCount) {}

    X11ShmSegment pixels;
    std::vector<ScreenPatch> patches;
    double hostTime = 0;
};

/// Hands frames to whoever records them, on a thread of its own, so that the next ones can be read meanwhile:
/// a recorder that stalls for less than so many frames as can wait misses none. Memory that was never needed
/// is never touched, and so takes no room.
class X11FrameDelivery {
  public:
    /// How many frames can wait: six at least, a quarter of a second's where they are no larger than 1080p.
    static std::size_t depth(std::size_t bytesPerFrame);

    /// Throws like X11ShmSegment. `connection` outlives it.
    X11FrameDelivery(const X11Connection& connection, std::size_t bytesPerFrame,
                     ScreenStream::FrameHandler onFrame);
    ~X11FrameDelivery() { finish(); }
    X11FrameDelivery(const X11FrameDelivery&) = delete;
    X11FrameDelivery& operator=(const X11FrameDelivery&) = delete;

    /// A frame to fill; waits while all are on their way. Null once it is finished.
    std::unique_ptr<X11Frame> takeEmpty();
    void deliver(std::unique_ptr<X11Frame> frame);

    /// Lets nobody wait any more.
    void close();
    /// Closes it, and returns when all that is on its way is delivered. Any thread but the delivering one;
    /// not on two at once.
    void finish();

    /// How often all frames were on their way when one was wanted.
    int timesBehind() const;

  private:
    void run();

    ScreenStream::FrameHandler onFrame_;
    mutable std::mutex lock_;
    std::condition_variable changed_;
    std::vector<std::unique_ptr<X11Frame>> empty_;  ///< the last one used is the next one taken
    std::deque<std::unique_ptr<X11Frame>> onTheirWay_;
    bool closed_ = false;
    int timesBehind_ = 0;
    std::jthread thread_;  ///< last, so that it starts when all else is there
};

}  // namespace tessaloom
