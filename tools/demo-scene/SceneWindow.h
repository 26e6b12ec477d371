// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QRasterWindow>
#include <QRegion>
#include <concepts>
#include <optional>

#include "demo-scene/JsonLines.h"
#include "demo-scene/RefreshClock.h"
#include "demo-scene/SceneLayout.h"
#include "demo-scene/SceneLook.h"
#include "demo-scene/SceneOptions.h"
#include "demo-scene/SceneState.h"

namespace tessaloom::demo {

/// Turns input into calls on the state, paints what that changed, and counts and logs those paints.
class SceneWindow : public QRasterWindow {
    Q_OBJECT

  public:
    explicit SceneWindow(const SceneOptions& options);

  Q_SIGNALS:
    /// The first picture is on the screen and the geometry file is written.
    void ready();

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    void change(const std::invocable<SceneState&> auto& action);
    void adopt(const SceneState& next);
    void pressAt(SceneState& state, QPoint point) const;
    void paintCounter(QPainter& painter) const;
    void logPaint();
    void writeGeometry() const;
    void showPointerShape();

    SceneOptions options_;
    JsonLines log_;
    SceneLayout layout_;
    SceneState state_;
    QBasicTimer frames_;
    QElapsedTimer sinceFrame_;
    /// Painted, but not yet known to be on the screen.
    QRegion unlogged_;
    unsigned counter_ = 0;
    std::optional<RefreshClock> busyFrames_;
};

}  // namespace tessaloom::demo
