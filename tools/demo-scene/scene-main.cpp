// SPDX-License-Identifier: GPL-3.0-or-later
#include <QGuiApplication>
#include <QScreen>
#include <cstdio>
#include <exception>

#include "demo-scene/SceneOptions.h"
#include "demo-scene/SceneWindow.h"

namespace {

using tessaloom::demo::SceneOptions;
using tessaloom::demo::SceneWindow;

// Not the full-screen state: without a window manager nobody would act on it.
void coverScreen(const SceneOptions& options, SceneWindow& window) {
    window.setFlags(Qt::FramelessWindowHint);
    window.setGeometry(QRect({0, 0}, options.size));
}

int runScene(const QGuiApplication& application) {
    SceneOptions options = SceneOptions::parse(QGuiApplication::arguments());
    if (options.fullScreen) options.size = application.primaryScreen()->size();
    SceneWindow window(options);
    if (options.fullScreen) coverScreen(options, window);
    QObject::connect(&window, &SceneWindow::ready, &window, [] {
        std::puts("ready");
        std::fflush(stdout);
    });
    window.show();
    return QGuiApplication::exec();
}

}  // namespace

int main(int argumentCount, char** arguments) {
    // Every length here is in screen pixels.
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    // A change is painted at once, not gathered with later ones for some milliseconds.
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    const QGuiApplication application(argumentCount, arguments);
    try {
        return runScene(application);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tessaloom-demo-scene: %s\n", error.what());
        return 1;
    }
}
