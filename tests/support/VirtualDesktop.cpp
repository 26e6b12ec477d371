// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/VirtualDesktop.h"

#include <filesystem>
#include <stdexcept>

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

Environment privateEnvironment(const std::filesystem::path& runtimeFolder) {
    Environment environment = currentEnvironment();
    for (const char* inherited : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "XAUTHORITY"}) {
        environment.erase(inherited);
    }
    environment["XDG_RUNTIME_DIR"] = runtimeFolder.string();
    // Without it toolkits start a bus of their own, which outlives the desktop.
    environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
    environment["LC_ALL"] = "C.UTF-8";
    return environment;
}

// The server writes the number it chose to its standard output once it accepts connections.
std::vector<std::string> serverCommand(int width, int height) {
    const std::string screen = std::to_string(width) + 'x' + std::to_string(height) + "x24";
    return {"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-noreset", "-screen", "0", screen};
}

std::string waitForDisplay(ChildProcess& server) {
    if (!server.waitForOutput("\n", 10s)) {
        throw std::runtime_error("The X server did not start: " + server.errors());
    }
    const std::string output = server.output();
    return ':' + output.substr(0, output.find('\n'));
}

}  // namespace

VirtualDesktop::VirtualDesktop(int width, int height, WindowManager manager)
    : environment_(privateEnvironment(runtimeFolder_.path())),
      server_(serverCommand(width, height), environment_),
      displayName_(waitForDisplay(server_)) {
    environment_["DISPLAY"] = displayName_;
    if (manager == WindowManager::Openbox) {
        windowManager_.emplace(std::vector<std::string>{"openbox", "--startup", "echo ready"}, environment_);
        // The startup command runs once windows are managed.
        if (!windowManager_->waitForOutput("ready", 10s)) {
            throw std::runtime_error("The window manager did not start: " + windowManager_->errors());
        }
    }
}

}  // namespace tessaloom::test
