// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/SceneWindow.h"

#include <xcb/xcb.h>

#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <cstdlib>
#include <memory>

#include "base/HostClock.h"
#include "demo-scene/CounterCode.h"
#include "demo-scene/KeyBindings.h"
#include "demo-scene/ScenePainter.h"
#include "demo-scene/Theme.h"

namespace tessaloom::demo {
namespace {

constexpr int frameMilliseconds = 16;

// Returns when the X server has drawn all that was sent to it; at once on other platforms.
void waitForServer() {
    const auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (application == nullptr) return;
    xcb_connection_t* connection = application->connection();
    const std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&std::free)> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr), std::free);
}

QJsonArray toJson(const QRect& rect) {
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

}  // namespace

SceneWindow::SceneWindow(const SceneOptions& options)
    : options_(options), log_(options.logFile), layout_(SceneLayout::forSize(options.size, options.busy)) {
    setTitle(QStringLiteral("Fieldnotes"));
    resize(options.size);
    if (!options.busy) return;
    busyFrames_.emplace([this] { change([](SceneState& state) { state.advanceBusyFrame(); }); });
}

bool SceneWindow::event(QEvent* event) {
    const bool handled = QRasterWindow::event(event);
    // The base class has painted and sent the picture off by now.
    if (!unlogged_.isEmpty()) logPaint();
    return handled;
}

void SceneWindow::paintEvent(QPaintEvent* event) {
    const QRegion& region = event->region();
    QPainter painter(this);
    paintScene(painter, layout_, state_, region);
    // Without the strip it is the same picture again, uncovered.
    if (!region.intersects(layout_.counterStrip)) return;
    ++counter_;
    paintCounter(painter);
    unlogged_ = region;
}

void SceneWindow::paintCounter(QPainter& painter) const {
    QRect cell(layout_.counterStrip.topLeft(), QSize(CounterCode::cellPixels, CounterCode::cellPixels));
    for (const bool light : CounterCode::encode(counter_)) {
        painter.fillRect(cell, light ? Theme::light : Theme::sidebarBottom);
        cell.translate(CounterCode::cellPixels, 0);
    }
}

void SceneWindow::logPaint() {
    waitForServer();
    const double now = HostClock::seconds();
    // The strip changes with every paint and would hide what the paint was for.
    const QRegion changed = unlogged_ - layout_.counterStrip;
    unlogged_ = {};
    log_.write({{"host", now},
                {"counter", static_cast<int>(counter_ % CounterCode::counterLimit)},
                {"rect", toJson(changed.boundingRect().translated(position()))}});
    if (counter_ > 1) return;
    writeGeometry();
    requestActivate();
    Q_EMIT ready();
}

void SceneWindow::writeGeometry() const {
    if (options_.geometryFile.isEmpty()) return;
    QFile file(options_.geometryFile);
    if (!file.open(QIODevice::WriteOnly)) {
        qWarning("The geometry file %s can't be written", qPrintable(options_.geometryFile));
        return;
    }
    file.write(QJsonDocument(layout_.geometry(position())).toJson());
}

void SceneWindow::resizeEvent(QResizeEvent* event) {
    layout_ = SceneLayout::forSize(event->size(), options_.busy);
    QRasterWindow::resizeEvent(event);
}

void SceneWindow::change(const std::invocable<SceneState&> auto& action) {
    SceneState next = state_;
    action(next);
    adopt(next);
}

void SceneWindow::adopt(const SceneState& next) {
    const QRegion changed = changedArea(layout_, state_, next);
    state_ = next;
    if (!changed.isEmpty()) update(changed + layout_.counterStrip);
    if (state_.animating() && !frames_.isActive()) {
        sinceFrame_.start();
        frames_.start(frameMilliseconds, Qt::PreciseTimer, this);
    }
}

void SceneWindow::timerEvent(QTimerEvent* event) {
    if (event->timerId() != frames_.timerId()) return;
    const double elapsed = sinceFrame_.isValid() ? static_cast<double>(sinceFrame_.restart()) / 1000 : 0;
    change([&](SceneState& state) { state.advance(elapsed); });
    if (!state_.animating()) frames_.stop();
}

void SceneWindow::mouseMoveEvent(QMouseEvent* event) {
    change([&](SceneState& state) { state.pointAt(controlAt(layout_, state, event->pos())); });
    showPointerShape();
}

void SceneWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) change([&](SceneState& state) { pressAt(state, event->pos()); });
}

void SceneWindow::pressAt(SceneState& state, QPoint point) const {
    const ControlId control = controlAt(layout_, state, point);
    state.press(control);
    if (control.kind != ControlKind::Field) return;
    const TextLine& line = state.draft().fields.at(static_cast<std::size_t>(control.index));
    const TextBox::Shape shape = textShapeOf(layout_.rectOf(control), control.index);
    state.placeCaret(control.index, TextBox::caretAt(shape, line, point));
}

void SceneWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    change([&](SceneState& state) {
        state.release(controlAt(layout_, state, event->pos()));
        state.pointAt(controlAt(layout_, state, event->pos()));
    });
}

void SceneWindow::keyPressEvent(QKeyEvent* event) {
    change([&](SceneState& state) { applyKey(state, *event); });
}

void SceneWindow::showPointerShape() {
    switch (state_.hovered().kind) {
        case ControlKind::None:
        case ControlKind::Palette:
        case ControlKind::Menu:
        case ControlKind::Bar:
            setCursor(Qt::ArrowCursor);
            break;
        case ControlKind::Field:
            setCursor(Qt::IBeamCursor);
            break;
        default:
            setCursor(Qt::PointingHandCursor);
            break;
    }
}

}  // namespace tessaloom::demo
