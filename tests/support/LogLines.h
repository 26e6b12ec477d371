// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QtMessageHandler>
#include <algorithm>
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
    /// The lines with this text.
    std::ptrdiff_t count(std::string_view text) const {
        const std::lock_guard guard(lock_);
        const auto part = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        return std::ranges::count_if(lines_, [&](const QString& line) { return line.contains(part); });
    }

    /// The number of the first line with this text; -1 when there is none.
    qsizetype find(std::string_view text) const {
        const std::lock_guard guard(lock_);
        const auto part = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        const auto found =
            std::ranges::find_if(lines_, [&](const QString& line) { return line.contains(part); });
        return found == lines_.end() ? -1 : found - lines_.begin();
    }

  private:
    /// Each line is headed by its category.
    static void receive(QtMsgType, const QMessageLogContext& context, const QString& line) {
        const std::lock_guard guard(lock_);
        if (current_ != nullptr) current_->lines_.push_back(QLatin1String(context.category) + ": " + line);
    }

    inline static std::mutex lock_;
    inline static LogLines* current_ = nullptr;
    QtMessageHandler previous_;
    QStringList lines_;
};

}  // namespace tessaloom::test
