// SPDX-License-Identifier: MIT
#include "ui/SplitView.h"

#include "platform/Localization.h"
#include "ui/FocusFrame.h"
#include "ui/outline_rules.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QResizeEvent>

#include <algorithm>

namespace {

constexpr int keyboardStep = 10;

// Passes movements by pointer and keyboard to the split view, which knows the limits.
class Divider : public QSplitterHandle
{
public:
    Divider(Qt::Orientation orientation, SplitView *view)
        : QSplitterHandle(orientation, view)
        , m_view(view)
    {
        setFocusPolicy(Qt::StrongFocus);
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QSplitterHandle::paintEvent(event);
        if (!hasFocus())
            return;
        QPainter painter(this);
        drawFocusFrame(painter, *this, rect());
    }

    void mousePressEvent(QMouseEvent *event) override { m_grabbedAt = event->position().toPoint().x(); }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (event->buttons().testFlag(Qt::LeftButton))
            m_view->moveDivider(mapToParent(event->position().toPoint()).x() - m_grabbedAt);
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Left)
            m_view->moveDivider(x() - keyboardStep);
        else if (event->key() == Qt::Key_Right)
            m_view->moveDivider(x() + keyboardStep);
        else
            QSplitterHandle::keyPressEvent(event);
    }

private:
    SplitView *m_view;
    int m_grabbedAt = 0;
};

} // namespace

SplitView::SplitView(QWidget *parent)
    : QSplitter(parent)
{
    // Which pane stands where is decided by their order alone.
    setLayoutDirection(Qt::LeftToRight);
    setChildrenCollapsible(false);
    setHandleWidth(OutlineRules::dividerThickness);
}

QSplitterHandle *SplitView::createHandle()
{
    auto *divider = new Divider(orientation(), this);
    divider->setAccessibleName(localizedString("DIVIDER_ACCESSIBLE_NAME"));
    divider->setAccessibleDescription(localizedString("DIVIDER_TOOL_TIP"));
    divider->setToolTip(localizedString("DIVIDER_TOOL_TIP"));
    return divider;
}

qreal SplitView::firstPaneWidth() const
{
    const int shown = sizes().constFirst();
    return qRound(m_exactFirstPaneWidth) == shown ? m_exactFirstPaneWidth : shown;
}

void SplitView::setFirstPaneWidth(qreal width)
{
    m_exactFirstPaneWidth = width;
    const int shown = qRound(width);
    setSizes({ shown, std::max(0, this->width() - shown - handleWidth()) });
}

void SplitView::moveDivider(int position)
{
    int target = position;
    if (m_delegate) {
        const int least = m_delegate->splitView_constrainMinCoordinate_ofSubviewAt(this, position, 0);
        const int most = m_delegate->splitView_constrainMaxCoordinate_ofSubviewAt(this, position, 0);
        target = std::max(least, std::min(most, position));
    }
    setFirstPaneWidth(target);
}

void SplitView::resizeEvent(QResizeEvent *event)
{
    if (m_delegate && count() == 2 && event->oldSize().isValid())
        m_delegate->splitView_resizeSubviewsWithOldSize(this, event->oldSize());
    else
        QSplitter::resizeEvent(event);
    // A width that was set before the first real size has not been applied yet.
    if (!event->oldSize().isValid() && count() == 2 && m_exactFirstPaneWidth > 0)
        setFirstPaneWidth(m_exactFirstPaneWidth);
}
