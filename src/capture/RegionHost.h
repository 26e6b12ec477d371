// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointF>
#include <QQuickView>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "core/Geometry.h"

namespace tessaloom {

/// What a drag from one point to another selects; nothing when it is not wider and taller than 8 points.
std::optional<Rect> selectedArea(QPointF start, QPointF current);

/// One selection of an area: a view on each screen, until the user has dragged one or cancelled. Main thread.
class RegionHost : public QObject {
    Q_OBJECT

  public:
    /// Called once: with the area in global points, or nothing.
    using Done = std::function<void(std::optional<Rect>)>;

    /// The area's points have `pixelsPerPoint`, as a recording counts them. Throws std::runtime_error when
    /// the views can't be made.
    RegionHost(double pixelsPerPoint, Done done);

    /// Ends the selection; without effect once it has ended.
    void finish(std::optional<Rect> area);

  protected:
    bool eventFilter(QObject* window, QEvent* event) override;

  private Q_SLOTS:
    void released(const QPointF& from, const QPointF& to);

  private:
    void cover(QScreen* screen);
    Rect inGlobalPoints(const Rect& area, const QScreen& screen) const;

    std::vector<std::unique_ptr<QQuickView>> windows_;  ///< one a screen
    double pixelsPerPoint_;
    Done done_;
    bool finished_ = false;
};

}  // namespace tessaloom
