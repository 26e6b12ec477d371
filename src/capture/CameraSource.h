// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "media/BgraImage.h"

namespace tessaloom {

struct CameraPicture {
    double hostTime = 0;  ///< HostClock seconds at which it was taken
    BgraView pixels;      ///< of even width and height
};

/// A camera. It keeps delivering through whatever happens to its device: when that is unplugged another one
/// takes over, with pictures of another size perhaps, and when there is none nothing comes until there is
/// one.
class CameraSource {
  public:
    /// Runs on the source's own thread; the pixels are valid during the call.
    using Handler = std::function<void(const CameraPicture&)>;

    virtual ~CameraSource() = default;

    /// The device's name for people, as of when it was opened.
    virtual std::string name() const = 0;

    /// Called once.
    virtual void start(Handler handler) = 0;
    /// The handler doesn't run after it returns. Safe to call at any time, also twice.
    virtual void stop() = 0;
};

}  // namespace tessaloom
