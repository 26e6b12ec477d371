// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

namespace tessaloom::demo {

struct SceneOptions {
    QSize size{1280, 720};
    bool fullScreen = false;
    /// Shows an area that changes sixty times a second.
    bool busy = false;
    /// Empty for none.
    QString logFile;
    QString geometryFile;

    /// Prints the usage and ends the program on --help or an unknown option; throws std::runtime_error for a
    /// size that isn't one.
    static SceneOptions parse(const QStringList& arguments);
};

}  // namespace tessaloom::demo
