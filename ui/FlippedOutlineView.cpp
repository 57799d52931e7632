// SPDX-License-Identifier: MIT
#include "ui/FlippedOutlineView.h"

#include "platform/SystemRelease.h"
#include "ui/outline_rules.h"

FlippedOutlineView::FlippedOutlineView(QWidget *parent)
    : OutlineView(parent)
{
    // The frames below mirror the view by themselves; a mirrored base would mirror them back.
    setLayoutDirection(Qt::LeftToRight);
}

QRect FlippedOutlineView::frameOfOutlineCellAtRow(int row) const
{
    const QRect base = OutlineView::frameOfOutlineCellAtRow(row);
    return base.isEmpty()
        ? base
        : OutlineRules::flippedTriangleFrame(base, viewport()->width(), systemMajorVersion());
}

QRect FlippedOutlineView::frameOfCellAtColumn(int column, int row) const
{
    return OutlineRules::flippedCellFrame(
        OutlineView::frameOfCellAtColumn(column, row), systemMajorVersion());
}
