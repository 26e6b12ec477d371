// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <utility>

namespace tessaloom {

/// What the countdown's view shows.
class CountdownModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

  public:
    int count() const { return count_; }
    void setCount(int count) {
        if (std::exchange(count_, count) != count) Q_EMIT countChanged();
    }

  Q_SIGNALS:
    void countChanged();

  private:
    int count_ = 3;
};

}  // namespace tessaloom
