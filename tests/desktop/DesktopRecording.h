// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/TakeBundle.h"
#include "media/BgraImage.h"
#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDesktop.h"

namespace tessaloom::test {

/// `tessaloom record` at work on a virtual desktop, with a library of its own.
class DesktopRecording {
  public:
    /// Returns once the recording runs. Throws std::runtime_error with the program's words when it doesn't.
    explicit DesktopRecording(const VirtualDesktop& desktop, std::vector<std::string> arguments = {})
        : DesktopRecording(desktop.environment(), std::move(arguments)) {}
    /// The same in this environment, which names the desktop.
    DesktopRecording(const Environment& environment, std::vector<std::string> arguments);

    ChildProcess& program() { return *program_; }
    const Environment& environment() const { return environment_; }
    const std::filesystem::path& library() const { return library_.path(); }

    /// The bundle being recorded.
    TakeBundle bundle() const;

    /// Ctrl-C; the finished bundle. Throws std::runtime_error when the program doesn't end well.
    TakeBundle stop();
    /// The same for a program that ends by itself.
    TakeBundle waitForEnd();

  private:
    TemporaryFolder library_;
    Environment environment_;
    std::unique_ptr<ChildProcess> program_;
};

/// The environment for the program with this library and settings of its own.
Environment programEnvironment(const Environment& desktop, const std::filesystem::path& library);

/// Whether a library used with programEnvironment() holds nothing but the settings.
bool isWithoutRecordings(const std::filesystem::path& library);

/// Puts two monitors, the left one primary, side by side on a desktop of 640 by 480 pixels. Throws
/// std::runtime_error when the server refuses; so does the next.
void splitScreen(const VirtualDesktop& desktop);

/// 96 are one pixel per point.
void setDotsPerInch(const VirtualDesktop& desktop, int dotsPerInch);

/// The recorded picture in force at `time` seconds. Throws std::runtime_error when there is none.
BgraImage recordedPicture(const TakeBundle& bundle, double time);

/// The times of all recorded frames, in seconds.
std::vector<double> recordedTimes(const TakeBundle& bundle);

/// The pixel's colour as 0xRRGGBB.
std::uint32_t colorAt(const BgraImage& picture, int x, int y);

/// Whether all three components are the same to within what the video format rounds.
bool isNearly(std::uint32_t color, std::uint32_t expected);

}  // namespace tessaloom::test
