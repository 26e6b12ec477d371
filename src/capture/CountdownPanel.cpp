// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CountdownPanel.h"

#include <QGuiApplication>
#include <QScreen>

#include "capture/OverlayWindow.h"

namespace tessaloom {
namespace {

constexpr QSize panelSize(220, 220);
constexpr QSize plateSize(170, 170);

QRect centered(QSize size, const QRect& area) {
    QRect rect(QPoint(), size);
    rect.moveCenter(area.center());
    return rect;
}

}  // namespace

void CountdownPanel::show(int count) {
    model_.setCount(count);
    if (!window_) {
        window_ = makeOverlayWindow("CountdownView.qml", panelSize,
                                    {{"model", QVariant::fromValue(&model_)}, {"plateSize", plateSize}});
        window_->setMask(
            roundedRegion(centered(plateSize, QRect(QPoint(), panelSize)), plateSize.width() / 2.0));
    }
    if (window_->isVisible()) return;
    window_->setGeometry(centered(panelSize, QGuiApplication::primaryScreen()->geometry()));
    window_->show();
    window_->raise();
}

void CountdownPanel::hide() {
    if (window_) window_->hide();
}

}  // namespace tessaloom
