// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <vector>

#include "platform/x11/LeftArea.h"

namespace tessaloom {

/// Remembers where windows of this program were until a moment ago, from its making on: a stream that opens
/// then can't see them any more, but a compositing manager may go on showing them. Main thread.
class HiddenWindows : public QObject {
  public:
    /// Without effect where there is no Qt application, which then has no windows either.
    HiddenWindows();

    /// Those that may still be shown.
    std::vector<LeftArea> areas();

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    std::vector<LeftArea> areas_;
};

}  // namespace tessaloom
