// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QQuickView>
#include <memory>

#include "capture/CountdownModel.h"

namespace tessaloom {

/// The countdown's number on a round plate in the middle of the main screen. Main thread.
class CountdownPanel {
  public:
    void show(int count);
    void hide();

  private:
    CountdownModel model_;
    std::unique_ptr<QQuickView> window_;  ///< from its first use on
};

}  // namespace tessaloom
