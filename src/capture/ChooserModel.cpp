// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ChooserModel.h"

#include <QSizeF>
#include <utility>

namespace tessaloom {
namespace {

enum Role { titleRole = Qt::UserRole, detailRole, isDisplayRole, pictureRole, pictureSizeRole, isGoneRole };

}  // namespace

ChooserModel::ChooserModel(const std::vector<ChooserEntry>& entries, double pixelsPerPoint)
    : pixelsPerPoint_(pixelsPerPoint) {
    for (const ChooserEntry& entry : entries)
        cards_.push_back({entry.title, entry.detail, !entry.filter.window, {}, false});
}

void ChooserModel::setCurrent(int index) {
    if (std::exchange(current_, index) != index) Q_EMIT currentChanged();
}

void ChooserModel::setPicture(std::size_t index, const QImage& picture) {
    cards_[index].picture = picture;
    tellChange(index, {pictureRole, pictureSizeRole});
}

void ChooserModel::setGone(std::size_t index) {
    cards_[index].isGone = true;
    tellChange(index, {isGoneRole, detailRole});
}

void ChooserModel::tellChange(std::size_t index, const QList<int>& roles) {
    const QModelIndex changed = createIndex(static_cast<int>(index), 0);
    Q_EMIT dataChanged(changed, changed, roles);
}

int ChooserModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(cards_.size());
}

QVariant ChooserModel::data(const QModelIndex& index, int role) const {
    const Card& card = cards_[static_cast<std::size_t>(index.row())];
    switch (role) {
        case titleRole:
            return card.title;
        case detailRole:
            return card.isGone ? QStringLiteral("This window was closed") : card.detail;
        case isDisplayRole:
            return card.isDisplay;
        case pictureRole:
            return card.picture;
        case pictureSizeRole:
            return QSizeF(card.picture.size()) / pixelsPerPoint_;
        case isGoneRole:
            return card.isGone;
        default:
            return {};
    }
}

QHash<int, QByteArray> ChooserModel::roleNames() const {
    return {{titleRole, "title"},     {detailRole, "detail"},           {isDisplayRole, "isDisplay"},
            {pictureRole, "picture"}, {pictureSizeRole, "pictureSize"}, {isGoneRole, "isGone"}};
}

}  // namespace tessaloom
