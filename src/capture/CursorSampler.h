// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "capture/InputSources.h"
#include "core/CursorSample.h"
#include "core/Geometry.h"

namespace tessaloom {

/// Samples the pointer's path at a steady rate on a thread of its own.
class CursorSampler {
  public:
    /// `origin` in HostClock seconds, `displayFrame` the captured area in global points.
    CursorSampler(std::unique_ptr<PointerSource> pointer, double origin, const Rect& displayFrame);

    /// `rate` in samples a second; the first is taken now.
    void start(double rate);
    /// No sample is taken after it returns. Safe to call at any time, also twice.
    void stop();

    /// Hands over the samples since the last call, in time order, also those outside the area. Any thread.
    std::vector<CursorSample> takeSamples();

  private:
    void run(const std::stop_token& stop, double interval);
    void sample();

    std::unique_ptr<PointerSource> pointer_;
    double origin_;
    Rect displayFrame_;
    std::mutex lock_;
    std::vector<CursorSample> samples_;
    std::jthread thread_;
};

}  // namespace tessaloom
