// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QtGlobal>

namespace tessaloom::test {

/// The log lines written while it lives.
class LogLines {
  public:
    LogLines() : before_(qInstallMessageHandler(collect)) { lines.clear(); }
    ~LogLines() { qInstallMessageHandler(before_); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    static inline QStringList lines;

  private:
    static void collect(QtMsgType, const QMessageLogContext&, const QString& line) { lines << line; }

    QtMessageHandler before_;
};

}  // namespace tessaloom::test
