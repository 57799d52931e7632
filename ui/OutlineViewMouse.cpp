// SPDX-License-Identifier: MIT
//
// The outline view and the mouse.
#include "ui/OutlineModel.h"
#include "ui/OutlineView.h"

#include <QMouseEvent>

QModelIndex OutlineView::triangleAt(const QPoint &position) const
{
    const QModelIndex index = indexAt(QPoint(viewport()->width() / 2, position.y()));
    const bool isOnTriangle
        = index.isValid() && frameOfOutlineCellAtRow(rowForItem(m_model->itemAt(index))).contains(position);
    return isOnTriangle ? index : QModelIndex();
}

// The tree view has its triangles where this view may have text: its mouse handling is passed over.

// NOLINTBEGIN(bugprone-parent-virtual-call)

void OutlineView::mousePressEvent(QMouseEvent *event)
{
    const QModelIndex index = triangleAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && index.isValid()) {
        setExpanded(index, !isExpanded(index));
        return;
    }
    QAbstractItemView::mousePressEvent(event);
    // Newer releases of Qt leave the selection as it is.
    if (event->button() == Qt::LeftButton && !indexAt(event->position().toPoint()).isValid())
        clearSelection();
}

void OutlineView::mouseReleaseEvent(QMouseEvent *event)
{
    QAbstractItemView::mouseReleaseEvent(event);
}

void OutlineView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QPoint position = event->position().toPoint();
    if (!triangleAt(position).isValid())
        QAbstractItemView::mouseDoubleClickEvent(event);
    const QModelIndex index = indexAt(position);
    if (event->button() == Qt::LeftButton && index.isValid())
        setExpanded(index, !isExpanded(index));
}

// NOLINTEND(bugprone-parent-virtual-call)
