// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>

namespace tessaloom {

/// A media file could not be opened, read or written. `what()` is one plain sentence with the library's
/// reason.
class MediaError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A media file that is sound but holds no pictures.
class NoVideoTrack : public MediaError {
  public:
    using MediaError::MediaError;
};

}  // namespace tessaloom
