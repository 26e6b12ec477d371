// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtMessageHandler>
#include <algorithm>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

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
    bool contains(QtMsgType level, std::string_view text) const {
        return countWhere(text, [level](const Line& line) { return line.level == level; }) > 0;
    }
    /// The lines with this text.
    std::ptrdiff_t count(std::string_view text) const {
        return countWhere(text, [](const Line&) { return true; });
    }
    /// From the first one on.
    std::vector<std::string> texts() const {
        const std::lock_guard guard(lock_);
        std::vector<std::string> all;
        for (const Line& line : lines_)
            all.push_back(line.text.toStdString());
        return all;
    }

    /// The number of the first line with this text; -1 when there is none.
    std::ptrdiff_t find(std::string_view text) const {
        const std::lock_guard guard(lock_);
        const auto found =
            std::ranges::find_if(lines_, [text](const Line& line) { return line.contains(text); });
        return found == lines_.end() ? -1 : found - lines_.begin();
    }

  private:
    struct Line {
        QtMsgType level;
        QLatin1String category;  ///< lives as long as the program
        QString text;

        /// Each line is headed by its category.
        bool contains(std::string_view part) const {
            const QString whole = category + QStringLiteral(": ") + text;
            return whole.contains(QString::fromUtf8(part.data(), static_cast<qsizetype>(part.size())));
        }
    };

    template <typename Condition>
    std::ptrdiff_t countWhere(std::string_view text, Condition condition) const {
        const std::lock_guard guard(lock_);
        return std::ranges::count_if(
            lines_, [&](const Line& line) { return line.contains(text) && condition(line); });
    }
    static void receive(QtMsgType level, const QMessageLogContext& context, const QString& text) {
        const std::lock_guard guard(lock_);
        if (current_ != nullptr) current_->lines_.push_back({level, QLatin1String(context.category), text});
    }

    inline static std::mutex lock_;
    inline static LogLines* current_ = nullptr;
    QtMessageHandler previous_;
    std::vector<Line> lines_;
};

}  // namespace tessaloom::test
