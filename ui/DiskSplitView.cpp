// SPDX-License-Identifier: MIT
//
// The panes of the split view and their limits.
#include "app/ZorvexDiskManagerAppDelegate.h"

#include "ui/outline_rules.h"

int ZorvexDiskManagerAppDelegate::splitView_constrainMinCoordinate_ofSubviewAt(SplitView *, int, int)
{
    return OutlineRules::minimumDividerPosition(isRightToLeftLocalization());
}

int ZorvexDiskManagerAppDelegate::splitView_constrainMaxCoordinate_ofSubviewAt(SplitView *view, int, int)
{
    return OutlineRules::maximumDividerPosition(view ? view->width() : 0, isRightToLeftLocalization());
}

void ZorvexDiskManagerAppDelegate::splitView_resizeSubviewsWithOldSize(SplitView *view, const QSize &oldSize)
{
    const OutlineRules::PaneWidths widths = OutlineRules::resizedPaneWidths(
        oldSize.width(), view->width(), view->firstPaneWidth(), isRightToLeftLocalization());
    view->setFirstPaneWidth(widths.first);
}
