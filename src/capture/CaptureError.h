// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace tessaloom {

/// Why a recording could not start or go on, in words meant for the user (`what()`).
class CaptureError : public std::runtime_error {
  public:
    enum class Kind { noDisplay, noMicrophone, noCamera, noFrames, cameraNotAuthorized, windowNotFound };

    /// `advice` is a sentence on why, or on what to do about it, for places that show more than what().
    static CaptureError noDisplay(const std::string& advice);
    static CaptureError noMicrophone();
    static CaptureError noCamera();
    static CaptureError noFrames();
    static CaptureError cameraNotAuthorized();
    /// `wanted` is the application, or the application and the title in double quotes, as the user wrote
    /// them.
    static CaptureError windowNotFound(const std::string& wanted);

    Kind kind() const { return kind_; }
    /// Empty where what() says it all.
    const std::string& advice() const { return advice_; }

  private:
    CaptureError(Kind kind, const std::string& message, std::string advice = {})
        : std::runtime_error(message), kind_(kind), advice_(std::move(advice)) {}

    Kind kind_;
    std::string advice_;
};

}  // namespace tessaloom
