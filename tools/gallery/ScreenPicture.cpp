// SPDX-License-Identifier: GPL-3.0-or-later
#include "gallery/ScreenPicture.h"

#include <QPainter>

#include "demo-scene/SceneLayout.h"
#include "demo-scene/ScenePainter.h"

namespace tessaloom::gallery {
namespace {

const QSize sceneSize(static_cast<int>(capturedArea.width), static_cast<int>(capturedArea.height));

}  // namespace

QImage screenPicture() {
    const demo::SceneLayout layout = demo::SceneLayout::forSize(sceneSize, false);
    QImage picture(sceneSize * capturedArea.displayScaleFactor, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.scale(capturedArea.displayScaleFactor, capturedArea.displayScaleFactor);
    demo::paintScene(painter, layout, demo::SceneState(), QRect({0, 0}, sceneSize));
    return picture;
}

RelativePoint saveButton() {
    const QRectF button = demo::SceneLayout::forSize(sceneSize, false).rectOf({demo::ControlKind::Save, 0});
    const double x = button.left() + 0.86 * button.width();
    const double y = button.top() + 0.6 * button.height();
    return {x / capturedArea.width, y / capturedArea.height};
}

}  // namespace tessaloom::gallery
