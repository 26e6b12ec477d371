// SPDX-License-Identifier: GPL-3.0-or-later
#include <QGuiApplication>
#include <csignal>

#include "base/Log.h"
#include "platform/x11/X11CapturePlatform.h"
#include "render/CpuRenderer.h"
#include "shell/CommandLine.h"

/// Above everything: picks what fills each role on this machine and hands it down.
int main(int argumentCount, char** argumentValues) {
    using namespace tessaloom;
    // The commands draw text but open no window; without this they would need a display to export.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // A file that grows past a limit is then an error like a full disk, which cleans up, instead of the end.
    std::signal(SIGXFSZ, SIG_IGN);
    Log::install(qEnvironmentVariableIsSet("TESSALOOM_VERBOSE"));
    const QGuiApplication application(argumentCount, argumentValues);
    X11CapturePlatform capture;
    const CommandServices services{capture, [] { return std::make_unique<CpuRenderer>(); }};
    return static_cast<int>(runCommandLine(QGuiApplication::arguments().mid(1), services));
}
