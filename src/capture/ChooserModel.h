// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractListModel>
#include <QImage>
#include <vector>

#include "capture/ChooserEntry.h"

namespace tessaloom {

/// What the chooser's cards show, and which of them the keyboard is at.
class ChooserModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int current READ current NOTIFY currentChanged)

  public:
    /// Its pictures have `pixelsPerPoint`.
    ChooserModel(const std::vector<ChooserEntry>& entries, double pixelsPerPoint);

    int current() const { return current_; }
    void setCurrent(int index);
    void setPicture(std::size_t index, const QImage& picture);
    /// It was closed, and can't be picked any more.
    bool isGone(int index) const { return cards_[static_cast<std::size_t>(index)].isGone; }
    void setGone(std::size_t index);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void currentChanged();

  private:
    void tellChange(std::size_t index, const QList<int>& roles);

    struct Card {
        QString title;
        QString detail;
        bool isDisplay = false;
        QImage picture;  ///< null at first
        bool isGone = false;
    };

    std::vector<Card> cards_;
    double pixelsPerPoint_;
    int current_ = 0;
};

}  // namespace tessaloom
