// SPDX-License-Identifier: MIT
#include "ui/outline_rules.h"

#include <algorithm>

#include "platform/NoWidgets.h"

namespace OutlineRules {

namespace {

constexpr int triangleMargin = 6;

} // namespace

bool mirrorsFrames(std::optional<unsigned long> generation)
{
    return generation && *generation >= firstMirroringGeneration;
}

QRect flippedTriangleFrame(const QRect &base, int viewWidth, std::optional<unsigned long> generation)
{
    if (!mirrorsFrames(generation))
        return base;
    QRect frame = base;
    frame.moveLeft(viewWidth - base.width() - triangleMargin);
    return frame;
}

QRect flippedCellFrame(const QRect &base, std::optional<unsigned long> generation)
{
    if (!mirrorsFrames(generation))
        return base;
    QRect frame = base;
    frame.moveLeft(0);
    return frame;
}

int minimumDividerPosition(bool isRightToLeft)
{
    return isRightToLeft ? minimumTabWidth : minimumTreeWidth;
}

int maximumDividerPosition(int splitViewWidth, bool isRightToLeft)
{
    return splitViewWidth - (isRightToLeft ? minimumTreeWidth : minimumTabWidth);
}

PaneWidths resizedPaneWidths(int oldWidth, int newWidth, qreal firstWidth, bool isRightToLeft)
{
    const qreal firstMinimum = isRightToLeft ? minimumTabWidth : minimumTreeWidth;
    const qreal secondMinimum = isRightToLeft ? minimumTreeWidth : minimumTabWidth;
    // Without an old width there is no share to keep.
    const qreal proposed = oldWidth > 0 ? newWidth * firstWidth / oldWidth : firstWidth;
    const qreal first = std::min(newWidth - secondMinimum, std::max(firstMinimum, proposed));
    const qreal second = std::max(secondMinimum, newWidth - first) - dividerThickness;
    return { first, second };
}

} // namespace OutlineRules
