// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/CapturePlatform.h"
#include "platform/x11/HiddenWindows.h"

namespace tessaloom {

/// Recording on an X server, the one named by DISPLAY at the time of each call.
class X11CapturePlatform final : public CapturePlatform {
  public:
    /// Whether a server answers.
    static bool isThere();

    ShareableContent shareableContent() override;
    ContentFilter withPresentFrame(const ContentFilter& filter) override;
    bool takePreflightPicture(const ContentFilter& filter) override;
    bool leavesOutOwnWindows() override;
    BgraImage wallpaper(const DesktopScreen& screen) override;
    std::unique_ptr<ScreenStream> makeScreenStream(const StreamConfiguration& configuration) override;
    std::unique_ptr<PointerSource> makePointerSource() override;
    std::unique_ptr<InputEventSource> makeInputEventSource() override;
    std::unique_ptr<SourcePicker> makeSourcePicker() override;
    std::unique_ptr<ThumbnailSource> makeThumbnailSource(const std::vector<ContentFilter>& filters,
                                                         QSize largest) override;

  private:
    HiddenWindows hiddenWindows_;
};

}  // namespace tessaloom
