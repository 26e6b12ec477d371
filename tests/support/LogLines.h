// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QtMessageHandler>
#include <algorithm>
#include <cstddef>
#include <mutex>
#include <string_view>

namespace tessaloom::test {

/// Gathers what the program logs, from all threads, as long as it lives. One at a time.
class LogLines {
  public:
    LogLines() : previous_(qInstallMessageHandler(&LogLines::receive)) { current_ = this; }
    ~LogLines() {
        qInstallMessageHandler(previous_);
        current_ = nullptr;
    }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    bool contains(std::string_view text) const { return count(text) > 0; }

    std::ptrdiff_t count(std::string_view text) const {
        const std::lock_guard guard(lock_);
        const auto part = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        return std::ranges::count_if(lines_, [&](const QString& line) { return line.contains(part); });
    }

  private:
    static void receive(QtMsgType, const QMessageLogContext&, const QString& line) {
        const std::lock_guard guard(lock_);
        if (current_ != nullptr) current_->lines_.push_back(line);
    }

    inline static std::mutex lock_;
    inline static LogLines* current_ = nullptr;
    QtMessageHandler previous_;
    QStringList lines_;
};

}  // namespace tessaloom::test
