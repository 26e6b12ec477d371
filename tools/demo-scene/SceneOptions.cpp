// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/SceneOptions.h"

#include <QCommandLineParser>
#include <stdexcept>

namespace tessaloom::demo {
namespace {

constexpr QSize smallest{1100, 680};

QSize sizeFrom(const QString& text) {
    const QStringList parts = text.split(QLatin1Char('x'));
    const QSize size = parts.size() == 2 ? QSize(parts[0].toInt(), parts[1].toInt()) : QSize();
    if (size.width() < smallest.width() || size.height() < smallest.height()) {
        throw std::runtime_error("--size takes WIDTHxHEIGHT, at least 1100x680, not " + text.toStdString());
    }
    return size;
}

}  // namespace

SceneOptions SceneOptions::parse(const QStringList& arguments) {
    const QCommandLineOption size("size", "Window size in pixels.", "WxH", "1280x720");
    const QCommandLineOption fullScreen("full-screen", "Cover the whole screen.");
    const QCommandLineOption busy("busy", "Show an area that changes sixty times a second.");
    const QCommandLineOption log("log", "Log each paint as a line of JSON.", "FILE");
    const QCommandLineOption geometry("geometry-file", "Write where the controls are as JSON.", "FILE");
    QCommandLineParser parser;
    parser.setApplicationDescription("A make-believe application to record: paints only what changes.");
    parser.addHelpOption();
    parser.addOptions({size, fullScreen, busy, log, geometry});
    parser.process(arguments);
    return {sizeFrom(parser.value(size)), parser.isSet(fullScreen), parser.isSet(busy), parser.value(log),
            parser.value(geometry)};
}

}  // namespace tessaloom::demo
