// SPDX-License-Identifier: MIT
#include "ui/OutlineView.h"

#include "ui/BusyMark.h"
#include "ui/color_rules.h"
#include "ui/FocusFrame.h"
#include "ui/ImageAndTextCell.h"
#include "ui/MediumMark.h"
#include "ui/OutlineModel.h"
#include "ui/ToolTips.h"
#include "ui/Units.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace {

constexpr int rowPadding = 4; // above and below a row's content together

} // namespace

// Draws a row with the view's data cell.
class OutlineView::CellDelegate : public QStyledItemDelegate
{
public:
    explicit CellDelegate(OutlineView *view)
        : QStyledItemDelegate(view)
        , m_view(view)
    {
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const OutlineItem item = m_view->m_model->itemAt(index);
        ImageAndTextCell *const cell = m_view->preparedCell(item);
        cell->highlighted = option.state.testFlag(QStyle::State_Selected);
        cell->drawWithFrame(m_view->frameOfCellAtColumn(index.column(), m_view->rowForItem(item)),
            m_view->viewport(), *painter);
    }

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const override
    {
        const ImageAndTextCell *const cell = m_view->preparedCell(m_view->m_model->itemAt(index));
        const QSizeF image = cell->image() ? cell->image()->deviceIndependentSize() : QSizeF();
        const QSizeF size = cell->cellSize();
        return { static_cast<int>(std::ceil(size.width())) + rowPadding,
            static_cast<int>(std::ceil(std::max(size.height(), image.height()))) + rowPadding };
    }

private:
    OutlineView *m_view;
};

OutlineView::OutlineView(QWidget *parent)
    : QTreeView(parent)
    , m_model(std::make_unique<OutlineModel>(this))
    , m_cell(std::make_unique<ImageAndTextCell>())
    , m_isAskedAbout(QAccessible::isActive())
{
    QAccessible::installActivationObserver(this);
    setModel(m_model.get());
    setItemDelegate(new CellDelegate(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true); // the frame of the current row goes all around it
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setTextElideMode(Qt::ElideRight);
    setDragDropMode(DragDrop);
    header()->setSectionsClickable(true);
    connect(header(), &QHeaderView::sectionClicked, this, [this](int column) {
        if (m_delegate)
            m_delegate->outlineView_didClickTableColumn(this, column);
    });
    connect(this, &QTreeView::expanded, this,
        [this](const QModelIndex &index) { m_model->setExpanded(index, true); });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex &index) {
        m_model->setExpanded(index, false);
        // A row that is no longer shown is no longer selected.
        if (selectionModel()->hasSelection() && selectedRow() < 0)
            selectionModel()->clear();
    });
}

OutlineView::~OutlineView()
{
    QAccessible::removeActivationObserver(this);
    m_delegate = nullptr;
    setModel(nullptr); // before the model goes
}

void OutlineView::setDataSource(OutlineDataSource *source)
{
    m_model->setDataSource(source);
    reloadData();
}

void OutlineView::setDelegate(OutlineDelegate *delegate)
{
    m_delegate = delegate;
}

void OutlineView::setDataCell(std::unique_ptr<ImageAndTextCell> cell)
{
    m_cell = std::move(cell);
}

ImageAndTextCell *OutlineView::preparedCell(const OutlineItem &item)
{
    m_cell->stringValue = m_model->data(m_model->indexOf(item)).toString();
    m_cell->font = font();
    m_cell->palette = palette();
    m_cell->direction = QGuiApplication::layoutDirection();
    m_cell->highlighted = false;
    if (m_delegate)
        m_delegate->outlineView_willDisplayCell_forTableColumn_item(this, m_cell.get(), 0, item);
    return m_cell.get();
}

bool OutlineView::shouldEdit(const OutlineItem &item, int column)
{
    return m_delegate && m_delegate->outlineView_shouldEditTableColumn_item(this, column, item);
}

int OutlineView::numberOfRows() const
{
    return m_model->shownRowCount();
}

OutlineItem OutlineView::itemAtRow(int row) const
{
    return m_model->itemAtShownRow(row);
}

int OutlineView::rowForItem(const OutlineItem &item) const
{
    return m_model->shownRowOf(item);
}

bool OutlineView::hasItem(const OutlineItem &item) const
{
    return m_model->indexOf(item).isValid();
}

int OutlineView::selectedRow() const
{
    const QModelIndexList selected = selectionModel()->selectedRows();
    return selected.isEmpty() ? -1 : rowForItem(m_model->itemAt(selected.constFirst()));
}

void OutlineView::selectRow(int row)
{
    const OutlineItem item = itemAtRow(row);
    if (!item) {
        selectionModel()->clear();
        return;
    }
    const QModelIndex index = m_model->indexOf(item);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

void OutlineView::reloadData()
{
    const int row = selectedRow();
    const QScopedValueRollback reloading(m_isReloading, true);
    // Taking away the current row would make the view select its neighbour.
    selectionModel()->clear();
    m_model->reload();
    selectAgain(row);
    tellEmptyState();
    layOutForAssistiveTechnologies();
}

void OutlineView::removeItem(const OutlineItem &item)
{
    const int row = selectedRow();
    const QScopedValueRollback reloading(m_isReloading, true);
    QModelIndex current = currentIndex();
    while (current.isValid() && m_model->itemAt(current) != item)
        current = current.parent();
    if (current.isValid())
        selectionModel()->clear();
    m_model->remove(item);
    if (current.isValid())
        selectAgain(row);
    tellEmptyState();
    layOutForAssistiveTechnologies();
}

// Where the user looks at other rows than the selected one, they stay.
void OutlineView::selectAgain(int row)
{
    setAutoScroll(false);
    if (row >= 0)
        selectRow(row);
    setAutoScroll(true);
}

void OutlineView::expandAllItems()
{
    for (QModelIndex item = m_model->anyCollapsedItem(); item.isValid(); item = m_model->anyCollapsedItem()) {
        expand(item);
        m_model->setExpanded(item, true);
    }
    layOutForAssistiveTechnologies();
}

void OutlineView::insertItem(const OutlineItem &item, const OutlineItem &parent, int index)
{
    if (!m_model->insert(item, parent, index))
        reloadData();
    tellEmptyState();
    layOutForAssistiveTechnologies();
}

// A row that is asked about while a layout is pending has it made first, and that layout takes away what
// stands for the rows: Qt would go on with a row that is gone.
void OutlineView::layOutForAssistiveTechnologies()
{
    if (m_isAskedAbout)
        executeDelayedItemsLayout();
}

void OutlineView::accessibilityActiveChanged(bool active)
{
    m_isAskedAbout = active;
    layOutForAssistiveTechnologies();
}

void OutlineView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    // A row that is inserted above the selection moves it, which is no change of what is selected.
    const bool isOnlyMoved = selected.isEmpty() && deselected.isEmpty();
    if (!m_delegate || m_isReloading || isOnlyMoved)
        return;
    m_delegate->outlineViewSelectionIsChanging();
    m_delegate->outlineViewSelectionDidChange();
}

// A row is drawn from edge to edge; its cell leaves out where the triangles are.
QRegion OutlineView::visualRegionForSelection(const QItemSelection &selection) const
{
    QRegion region;
    for (const QModelIndex &index : selection.indexes()) {
        const QRect cell = QTreeView::visualRect(index);
        if (!cell.isEmpty())
            region += QRect(0, cell.top(), viewport()->width(), cell.height());
    }
    return region;
}

void OutlineView::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    if (m_delegate)
        m_delegate->outlineViewColumnDidResize();
}

QRect OutlineView::frameOfOutlineCellAtRow(int row) const
{
    const OutlineItem item = itemAtRow(row);
    const QModelIndex index = item ? m_model->indexOf(item) : QModelIndex();
    if (!index.isValid() || m_model->rowCount(index) == 0)
        return {};
    const QRect cell = QTreeView::visualRect(index);
    return { cell.left() - indentation(), cell.top(), indentation(), cell.height() };
}

QRect OutlineView::frameOfCellAtColumn(int column, int row) const
{
    const OutlineItem item = itemAtRow(row);
    return item ? QTreeView::visualRect(m_model->index(
                      m_model->indexOf(item).row(), column, m_model->parent(m_model->indexOf(item))))
                : QRect();
}

QRect OutlineView::visualRect(const QModelIndex &index) const
{
    const QRect base = QTreeView::visualRect(index);
    return base.isEmpty() ? base : frameOfCellAtColumn(index.column(), rowForItem(m_model->itemAt(index)));
}

void OutlineView::copy()
{
    if (currentIndex().isValid())
        QGuiApplication::clipboard()->setText(currentIndex().data().toString());
}

bool OutlineView::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QTreeView::viewportEvent(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    const QModelIndex index = indexAt(help->pos());
    // The whole of a name that is cut, and the state that the row's shade stands for.
    QToolTip::showText(help->globalPos(), plainToolTip(index.data(Qt::AccessibleTextRole).toString()), this);
    return true;
}

void OutlineView::drawRow(
    QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem rowOption = option;
    initViewItemOption(&rowOption);
    rowOption.rect = QRect(0, option.rect.top(), viewport()->width(), option.rect.height());
    rowOption.showDecorationSelected = true;
    rowOption.state.setFlag(QStyle::State_Enabled, isEnabled());
    rowOption.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
    // The cell writes a selected name in the colour of an active window, which may not be readable on the
    // selection of an inactive one.
    rowOption.state.setFlag(QStyle::State_Active);
    rowOption.state.setFlag(QStyle::State_HasFocus, hasFocus() && currentIndex() == index);
    style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &rowOption, painter, this);

    const int row = rowForItem(m_model->itemAt(index));
    const QRect triangle = frameOfOutlineCellAtRow(row);
    if (!triangle.isEmpty()) {
        QStyleOption branch;
        branch.initFrom(this);
        branch.rect = triangle;
        // A triangle points at its row, which is mirrored or not whatever the view's own direction is.
        branch.direction = triangle.x() > frameOfCellAtColumn(0, row).x() ? Qt::RightToLeft : Qt::LeftToRight;
        branch.palette.setCurrentColorGroup(isEnabled() ? QPalette::Active : QPalette::Disabled);
        branch.state |= QStyle::State_Active | QStyle::State_Children;
        branch.state.setFlag(QStyle::State_Open, isExpanded(index));
        branch.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
        if (selectionModel()->isSelected(index))
            branch.palette = ColorRules::onSelection(branch.palette);
        style()->drawPrimitive(QStyle::PE_IndicatorBranch, &branch, painter, this);
    }
    itemDelegate()->paint(painter, rowOption, index);
    drawMark(*painter, index, rowOption.rect);
    if (rowOption.state.testFlag(QStyle::State_HasFocus))
        drawFocusFrame(*painter, *this, rowOption.rect);
}

// At the end of the row, by the view and not by the cell.
void OutlineView::drawMark(QPainter &painter, const QModelIndex &index, const QRect &row) const
{
    auto *const self = const_cast<OutlineView *>(this);
    const OutlineItem item = m_model->itemAt(index);
    const bool isSelected = selectionModel()->isSelected(index);
    // Where a name needs the room, the glyph goes.
    const qreal room = visualRect(index).width() - self->preparedCell(item)->cellSize().width();
    if (m_delegate && m_delegate->outlineView_isItemBusy(self, item))
        drawBusyMark(painter, *this, row, isSelected);
    else if (m_delegate && room >= mediumMarkWidth())
        drawMediumMark(painter, *this, row, m_delegate->outlineView_glyphOfItem(self, item), isSelected);
}

void OutlineView::setEmptyState(const EmptyState &state)
{
    m_emptyState = state;
    tellEmptyState();
    viewport()->update();
}

void OutlineView::tellEmptyState()
{
    const QString words = numberOfRows() > 0 ? QString() : m_emptyState.words();
    if (words != accessibleDescription())
        setAccessibleDescription(words);
}

void OutlineView::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (numberOfRows() > 0)
        return;
    QPainter painter(viewport());
    drawEmptyState(painter, *this, viewport()->rect(), m_emptyState);
}
