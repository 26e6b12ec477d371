// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDir>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <csignal>
#include <memory>

#include "base/Defaults.h"
#include "base/Log.h"
#include "platform/pipewire/PipeWireDevices.h"
#include "platform/x11/X11CapturePlatform.h"
#include "render/RendererChoice.h"
#include "shell/CommandLine.h"

namespace {

/// Qt looks into the session's runtime folder as it starts, and complains where the session has none, as in a
/// container or under cron. Nothing of ours is kept there, so an empty folder will do for this run.
std::unique_ptr<QTemporaryDir> runtimeFolderIfMissing() {
    if (!qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) return nullptr;
    auto folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + "/tessaloom-XXXXXX");
    if (folder->isValid()) qputenv("XDG_RUNTIME_DIR", folder->path().toLocal8Bit());
    return folder;
}

}  // namespace

/// Above everything: picks what fills each role on this machine and hands it down.
int main(int argumentCount, char** argumentValues) {
    using namespace tessaloom;
    const auto runtimeFolder = runtimeFolderIfMissing();
    // A display server that dies while it is written to must not take the recording with it.
    std::signal(SIGPIPE, SIG_IGN);
    // The commands draw text but open no window; without this they would need a display to export.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // A file that grows past a limit is then an error like a full disk, which cleans up, instead of the end.
    std::signal(SIGXFSZ, SIG_IGN);
    Log::install(qEnvironmentVariableIsSet("TESSALOOM_VERBOSE"));
    const QGuiApplication application(argumentCount, argumentValues);
    X11CapturePlatform capture;
    PipeWireDevices devices;
    const CommandServices services{
        capture, devices,
        [] { return makeRenderer(qEnvironmentVariable("TESSALOOM_RENDERER").toStdString()); },
        HardwareEncoding::installed(Defaults::stateFolder())};
    return static_cast<int>(runCommandLine(QGuiApplication::arguments().mid(1), services));
}
