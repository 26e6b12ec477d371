// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

namespace tessaloom::test {

enum class WindowManager { None, Openbox };

/// A private X screen of 24 bits with a runtime folder of its own and no session bus, for programs that must
/// see neither the user's desktop nor each other. It ends, with all it started, when this object does.
class VirtualDesktop {
  public:
    /// Sizes in pixels. Throws std::runtime_error when the server isn't up within ten seconds.
    explicit VirtualDesktop(int width = 1280, int height = 720, WindowManager manager = WindowManager::None);

    /// As ":12".
    const std::string& displayName() const { return displayName_; }

    /// What programs on this desktop are to be started with.
    const Environment& environment() const { return environment_; }

    /// The X server, to be frozen or killed.
    ChildProcess& server() { return server_; }

  private:
    // Destroyed from the last to the first: the window manager, the server, the folder both use.
    TemporaryFolder runtimeFolder_;
    Environment environment_;
    ChildProcess server_;
    std::string displayName_;
    std::optional<ChildProcess> windowManager_;
};

}  // namespace tessaloom::test
