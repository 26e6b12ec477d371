// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ChooserHost.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPixmap>
#include <QQuickItem>
#include <QScreen>
#include <algorithm>
#include <iterator>
#include <utility>

#include "capture/CaptureError.h"
#include "capture/OverlayWindow.h"

namespace tessaloom {
namespace {

QScreen* screenOfPointer() {
    QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) throw CaptureError::noDisplay("There is no screen to choose on.");
    return screen;
}

}  // namespace

ChooserHost::ChooserHost(CapturePlatform& platform, Done done)
    : entries_(chooserEntries(platform.shareableContent())), done_(std::move(done)) {
    if (entries_.empty()) throw CaptureError::noDisplay("There is nothing to choose from.");
    QScreen* const screen = screenOfPointer();
    layout_ = chooserLayout(screen->size(), static_cast<int>(entries_.size()));
    makeWindow(screen);
    startThumbnails(platform, screen->devicePixelRatio());
    window_->show();
    window_->raise();
    // For the keys: the application that has the focus keeps it, and doesn't see them.
    window_->setKeyboardGrabEnabled(true);
}

/// The view shows a still of its screen: without a compositing manager nothing is see-through.
void ChooserHost::makeWindow(QScreen* screen) {
    auto model = std::make_unique<ChooserModel>(entries_, screen->devicePixelRatio());
    window_ = makeOverlayWindow("ChooserView.qml", screen->size(),
                                {{"model", QVariant::fromValue(model.get())},
                                 {"image", screen->grabWindow(0).toImage()},
                                 {"columns", layout_.columns},
                                 {"card", layout_.card},
                                 {"picture", layout_.picture},
                                 {"sheet", layout_.sheet}},
                                {});
    model_ = model.release();
    model_->setParent(window_.get());
    window_->setScreen(screen);
    window_->setGeometry(screen->geometry());
    window_->installEventFilter(this);
    connect(window_->rootObject(), SIGNAL(picked(int)), this, SLOT(pick(int)));
    connect(window_->rootObject(), SIGNAL(cancelled()), this, SLOT(cancel()));
}

/// Pictures arrive on a thread of their own, and go to the model as long as that lives.
void ChooserHost::startThumbnails(CapturePlatform& platform, double pixelsPerPoint) {
    std::vector<ContentFilter> filters;
    std::ranges::transform(entries_, std::back_inserter(filters), &ChooserEntry::filter);
    thumbnails_ = platform.makeThumbnailSource(filters, layout_.picture * pixelsPerPoint);
    thumbnails_->start([model = model_](std::size_t index, const QImage& picture) {
        QMetaObject::invokeMethod(
            model,
            [model, index, picture] {
                if (picture.isNull()) return model->setGone(index);
                model->setPicture(index, picture);
            },
            Qt::QueuedConnection);
    });
}

bool ChooserHost::eventFilter(QObject* window, QEvent* event) {
    if (event->type() == QEvent::Close) finish(std::nullopt);
    if (event->type() != QEvent::KeyPress) return QObject::eventFilter(window, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Escape) {
        cancel();
    } else if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        pick(model_->current());
    } else {
        model_->setCurrent(
            cardAfterKey(key, model_->current(), layout_.columns, static_cast<int>(entries_.size())));
    }
    return true;
}

/// A card that tells of a closed window stays where it is, so that no other one gets under the pointer.
void ChooserHost::pick(int index) {
    if (model_->isGone(index)) return;
    finish(entries_[static_cast<std::size_t>(index)].filter);
}

void ChooserHost::cancel() {
    finish(std::nullopt);
}

void ChooserHost::finish(std::optional<ContentFilter> picked) {
    if (std::exchange(finished_, true)) return;
    thumbnails_->stop();
    window_->removeEventFilter(this);
    window_->setKeyboardGrabEnabled(false);
    window_->hide();
    window_.release()->deleteLater();  // an event of its own may have led here
    done_(std::move(picked));
}

}  // namespace tessaloom
