// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "base/Defaults.h"
#include "base/Log.h"
#include "base/TimeLimit.h"
#include "platform/pipewire/PipeWireDevices.h"
#include "platform/x11/X11CapturePlatform.h"
#include "platform/x11/X11Windows.h"
#include "render/RendererChoice.h"
#include "shell/CommandLine.h"
#include "shell/InterruptMask.h"

namespace {

constexpr std::chrono::seconds longestEnd{4};

/// Qt looks into the session's runtime folder as it starts, and complains where the session has none, as in a
/// container or under cron. Nothing of ours is kept there, so an empty folder will do for this run.
std::unique_ptr<QTemporaryDir> runtimeFolderIfMissing() {
    if (!qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) return nullptr;
    auto folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + "/tessaloom-XXXXXX");
    if (folder->isValid()) qputenv("XDG_RUNTIME_DIR", folder->path().toLocal8Bit());
    return folder;
}

void setDefault(const char* variable, const char* value) {
    if (qEnvironmentVariableIsEmpty(variable)) qputenv(variable, value);
}

/// The commands draw text but open no window, and must work without a display; only a recording shows itself
/// where there is one. Its few small windows are drawn soonest without a GPU.
void choosePlatform(const char* command) {
    const bool showsWindows =
        std::string_view(command) == "record" && tessaloom::X11CapturePlatform::isThere();
    qputenv("QT_QPA_PLATFORM", showsWindows ? "xcb" : "offscreen");
    if (!showsWindows) return;
    setDefault("QT_QUICK_BACKEND", "software");
    setDefault("QT_XCB_GL_INTEGRATION", "none");
    // Where the session has no bus, Qt would start one that outlives us.
    const bool hasBus = QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus");
    if (!hasBus) setDefault("DBUS_SESSION_BUS_ADDRESS", "disabled:");
}

/// The threads that come with it leave interrupts to the main one. `argumentCount` must outlive it.
std::unique_ptr<QGuiApplication> makeApplication(int& argumentCount, char** argumentValues) {
    const tessaloom::InterruptMask mask;
    return std::make_unique<QGuiApplication>(argumentCount, argumentValues);
}

int run(const QStringList& words) {
    tessaloom::X11CapturePlatform capture;
    tessaloom::PipeWireDevices devices;
    const tessaloom::CommandServices services{
        capture, devices,
        [] { return tessaloom::makeRenderer(qEnvironmentVariable("TESSALOOM_RENDERER").toStdString()); },
        tessaloom::HardwareEncoding::installed(tessaloom::Defaults::stateFolder()), tessaloom::hangUpWindows};
    return static_cast<int>(tessaloom::runCommandLine(words, services));
}

}  // namespace

/// Above everything: picks what fills each role on this machine and hands it down.
int main(int argumentCount, char** argumentValues) {
    using namespace tessaloom;
    const auto runtimeFolder = runtimeFolderIfMissing();
    // A display server that dies while it is written to must not take the recording with it.
    std::signal(SIGPIPE, SIG_IGN);
    choosePlatform(argumentCount > 1 ? argumentValues[1] : "");
    // A file that grows past a limit is then an error like a full disk, which cleans up, instead of the end.
    std::signal(SIGXFSZ, SIG_IGN);
    Log::install(qEnvironmentVariableIsSet("TESSALOOM_VERBOSE"));
    QStringList words;
    for (int index = 1; index < argumentCount; ++index)
        words.append(QString::fromLocal8Bit(argumentValues[index]));
    // Qt gets the name alone: it would take options for its own, as --display.
    int nameOnly = std::min(argumentCount, 1);
    auto application = makeApplication(nameOnly, argumentValues);
    // A countdown that goes off the screen is not the end.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // Whatever the program's file is called: by this name a recording knows the windows to leave out.
    QCoreApplication::setApplicationName("tessaloom");
    const int status = run(words);
    // Qt waits for its display server as it ends, also for one that hangs.
    const TimeLimit limit(longestEnd, [status] { std::_Exit(status); });
    application.reset();
    return status;
}
