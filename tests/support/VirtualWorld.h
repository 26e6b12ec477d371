// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>

namespace tessaloom::test {

/// What virtual microphones hear and cameras see, and players play. At each full second of HostClock
/// something happens; which second it was shows where that begins.
class VirtualWorld {
  public:
    static bool isStill(double hostTime) { return hostTime < begin_; }

    /// Nothing happens before `hostTime` as long as this lives.
    class StillUntil {
      public:
        explicit StillUntil(double hostTime) { begin_ = hostTime; }
        ~StillUntil() { begin_ = 0; }
        StillUntil(const StillUntil&) = delete;
        StillUntil& operator=(const StillUntil&) = delete;

        void setEnd(double hostTime) { begin_ = hostTime; }
    };

  private:
    inline static std::atomic<double> begin_ = 0;
};

}  // namespace tessaloom::test
