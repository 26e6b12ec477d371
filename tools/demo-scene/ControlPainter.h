// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPainter>

#include "demo-scene/Control.h"
#include "demo-scene/SceneLook.h"

namespace tessaloom::demo {

/// Paints one visible control inside its painted area.
void paintControl(QPainter& painter, const Control& control, const Look& look);

// The pieces, each in a file of its own; `rect` is the control's rectangle.

void paintNavigation(QPainter& painter, const QRect& rect, int index, const Look& look);
void paintGoal(QPainter& painter, const QRect& rect, const Look& look);
void paintSearch(QPainter& painter, const QRect& rect, const Look& look);
void paintTab(QPainter& painter, const QRect& rect, int index, const Look& look);
void paintRow(QPainter& painter, const QRect& rect, const Look& look);
void paintStatusPill(QPainter& painter, const QRect& rect, VisitStatus status);

void paintHeader(QPainter& painter, const QRect& rect, const Look& look);
void paintField(QPainter& painter, const QRect& rect, int index, const Look& look);
void paintStatus(QPainter& painter, const QRect& rect, const Look& look);
void paintToggle(QPainter& painter, const QRect& rect, const Look& look);
void paintDiscard(QPainter& painter, const QRect& rect, const Look& look);
void paintSave(QPainter& painter, const QRect& rect, const Look& look);

void paintChartTotal(QPainter& painter, const QRect& rect, const Look& look);
void paintBar(QPainter& painter, const QRect& rect, int index, const Look& look);
void paintBusy(QPainter& painter, const QRect& rect, const Look& look);

void paintSaveState(QPainter& painter, const QRect& rect, const Look& look);
void paintMenu(QPainter& painter, const QRect& rect, const Look& look);
void paintMenuItem(QPainter& painter, const QRect& rect, const Look& look);
void paintPalette(QPainter& painter, const QRect& rect, const Look& look);
void paintPaletteItem(QPainter& painter, const QRect& rect, const Look& look);
void paintToast(QPainter& painter, const QRect& rect, const Look& look);

}  // namespace tessaloom::demo
