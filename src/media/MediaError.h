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

/// The video encoder can't be opened, or gave up.
class EncodingError : public MediaError {
  public:
    using MediaError::MediaError;
};

/// A movie or sound file that is missing or damaged, or whose encoding is unknown.
class UnreadableMovie : public MediaError {
  public:
    using MediaError::MediaError;
};

/// A media file that is sound but holds no pictures.
class NoVideoTrack : public UnreadableMovie {
  public:
    using UnreadableMovie::UnreadableMovie;
};

/// A media file that is sound but holds nothing to hear.
class NoAudioTrack : public UnreadableMovie {
  public:
    using UnreadableMovie::UnreadableMovie;
};

}  // namespace tessaloom
