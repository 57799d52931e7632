// SPDX-License-Identifier: MIT
//
// The outline view of a right-to-left layout: the disclosure triangles stand at the right edge, the cells
// start at the left one. On systems before generation 9 the frames are the plain outline view's.
#pragma once

#include "ui/OutlineView.h"

class FlippedOutlineView : public OutlineView
{
    Q_OBJECT

public:
    explicit FlippedOutlineView(QWidget *parent = nullptr);

    QRect frameOfOutlineCellAtRow(int row) const override;
    QRect frameOfCellAtColumn(int column, int row) const override;
};
