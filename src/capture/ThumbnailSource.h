// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <cstddef>
#include <functional>

namespace tessaloom {

/// Live small pictures of several displays and windows, each as it would be recorded: without this program's
/// own windows, and of a window also what others cover.
class ThumbnailSource {
  public:
    /// A picture of the thing with this number, which fits the size that was asked for. Called on the
    /// source's own thread, once for each thing and again a few times a second as long as it changes. A null
    /// picture, at the end, tells that the thing is gone.
    using Handler = std::function<void(std::size_t index, const QImage& picture)>;

    virtual ~ThumbnailSource() = default;

    /// Before anything is shown that covers the things. Of what can't be seen there are no pictures. Throws
    /// std::runtime_error when there can be none at all. Called once.
    virtual void start(Handler handler) = 0;
    /// The handler doesn't run after it returns. Safe to call at any time, also twice.
    virtual void stop() = 0;
};

}  // namespace tessaloom
