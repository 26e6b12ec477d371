// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "media/LibavHandles.h"
#include "media/StereoSample.h"

struct SwrContext;

namespace tessaloom {

/// Turns decoded sound of any format into stereo at `soundRate`, without moving it. Included by this folder's
/// source files only.
class SoundConverter {
  public:
    /// Replaces `target` by what has become ready; the last fraction of a millisecond may come with the next
    /// call. A frame in another format than the one before begins anew. Throws UnreadableMovie.
    void convert(const AVFrame& frame, std::vector<StereoSample>& target);

    /// Replaces `target` by what is left.
    void finish(std::vector<StereoSample>& target);

    /// What comes next doesn't follow on.
    void restart() { resampler_.reset(); }

  private:
    struct Delete {
        void operator()(SwrContext* resampler) const;
    };
    struct Format {
        int sampleFormat = 0;
        int rate = 0;
        int channels = 0;

        bool operator==(const Format&) const = default;
    };

    void open(const AVFrame& frame);
    void run(const AVFrame* frame, std::vector<StereoSample>& target);

    std::unique_ptr<SwrContext, Delete> resampler_;
    Format format_;
};

}  // namespace tessaloom
