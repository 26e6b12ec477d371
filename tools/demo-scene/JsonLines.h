// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QJsonObject>
#include <QString>

namespace tessaloom::demo {

/// A log of one JSON object per line, each on disk as soon as it is written.
class JsonLines {
  public:
    /// Replaces what is there. An empty path logs nothing. Throws std::runtime_error when the file can't be
    /// written.
    explicit JsonLines(const QString& path);

    void write(const QJsonObject& object);

  private:
    QFile file_;
};

}  // namespace tessaloom::demo
