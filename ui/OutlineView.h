// SPDX-License-Identifier: MIT
//
// The outline view of the platform on top of a tree view: items instead of indexes, a selected row that keeps
// its number when the data is reloaded, expansion that stays with its item. Main thread only.
#pragma once

#include "ui/EmptyState.h"
#include "ui/OutlineDataSource.h"

#include <QAccessible>
#include <QSet>
#include <QTreeView>

#include <memory>
#include <optional>

class ImageAndTextCell;
class OutlineModel;

class OutlineView : public QTreeView, private QAccessible::ActivationObserver
{
    Q_OBJECT

public:
    explicit OutlineView(QWidget *parent = nullptr);
    ~OutlineView() override;

    void setDataSource(OutlineDataSource *source);
    void setDelegate(OutlineDelegate *delegate);

    // The cell that draws the rows; the view owns it.
    void setDataCell(std::unique_ptr<ImageAndTextCell> cell);

    // Rows are what is shown: the children of a collapsed item have none.
    int numberOfRows() const;
    OutlineItem itemAtRow(int row) const; // null when there is no such row
    int rowForItem(const OutlineItem &item) const; // -1 when it has none
    bool hasItem(const OutlineItem &item) const; // in a row, or below a collapsed one

    // The number of the selected row, or -1.
    int selectedRow() const;

    // Selects the row; one that does not exist selects nothing. Tells the delegate when the selection
    // changes.
    void selectRow(int row);

    // Asks the data source for the whole tree again. The number of the selected row stays while there is such
    // a row; the delegate is not told.
    void reloadData();

    // Like reloadData() for a single new item, which the data source has under the parent (null for the top
    // level) at the index. The selection stays on its item.
    void insertItem(const OutlineItem &item, const OutlineItem &parent, int index);

    // Like reloadData() when a single item has gone, with what was below it. The selection stays on its item;
    // when that goes, on its row's number.
    void removeItem(const OutlineItem &item);

    void expandAllItems();

    // What stands in the place of rows while there are none. A screen reader is told it as the view's
    // description.
    void setEmptyState(const EmptyState &state);

    // The data cell with the item's value in it, prepared by the delegate.
    ImageAndTextCell *preparedCell(const OutlineItem &item);

    // Whether the delegate allows the item's name to be edited in place.
    bool shouldEdit(const OutlineItem &item, int column);

    // The rectangle of the disclosure triangle in the viewport; empty for an item that cannot be expanded.
    virtual QRect frameOfOutlineCellAtRow(int row) const;
    virtual QRect frameOfCellAtColumn(int column, int row) const;

    QRect visualRect(const QModelIndex &index) const override;

public Q_SLOTS:
    // Puts the name of the selected row on the clipboard.
    void copy();

protected:
    void drawRow(
        QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    QRegion visualRegionForSelection(const QItemSelection &selection) const override;
    void resizeEvent(QResizeEvent *event) override;

private:
    class CellDelegate;

    void accessibilityActiveChanged(bool active) override;
    void layOutForAssistiveTechnologies();
    void selectAgain(int row);
    void tellEmptyState();
    void drawMark(QPainter &painter, const QModelIndex &index, const QRect &row) const;
    QModelIndex triangleAt(const QPoint &position) const; // invalid where there is none

    std::unique_ptr<OutlineModel> m_model;
    std::unique_ptr<ImageAndTextCell> m_cell;
    OutlineDelegate *m_delegate = nullptr;
    bool m_isReloading = false;
    bool m_isAskedAbout; // assistive technologies are in use
    EmptyState m_emptyState;
};
