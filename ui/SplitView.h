// SPDX-License-Identifier: MIT
//
// Two panes side by side whose delegate sets the limits of the divider and the panes' widths at a resize. The
// first pane is the left one in every language. Main thread only.
#pragma once

#include <QSplitter>

class SplitView;

class SplitViewDelegate
{
public:
    virtual ~SplitViewDelegate() = default;
    virtual int splitView_constrainMinCoordinate_ofSubviewAt(SplitView *view, int proposed, int index) = 0;
    virtual int splitView_constrainMaxCoordinate_ofSubviewAt(SplitView *view, int proposed, int index) = 0;
    virtual void splitView_resizeSubviewsWithOldSize(SplitView *view, const QSize &oldSize) = 0;
};

class SplitView : public QSplitter
{
    Q_OBJECT

public:
    explicit SplitView(QWidget *parent = nullptr);

    void setDelegate(SplitViewDelegate *delegate) { m_delegate = delegate; }

    // The width of the first pane. It is shown in whole pixels; the exact width is kept as long as the pane
    // shows it. The second pane gets what is left.
    qreal firstPaneWidth() const;
    void setFirstPaneWidth(qreal width);

    // Moves the divider as far as the delegate allows.
    void moveDivider(int position);

protected:
    QSplitterHandle *createHandle() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    SplitViewDelegate *m_delegate = nullptr;
    qreal m_exactFirstPaneWidth = 0;
};
