// SPDX-License-Identifier: MIT
#include "ui/outline_rules.h"

#include <algorithm>

#include "platform/no_widgets.h"

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

PaneWidths resizedPaneWidths(int oldWidth, int newWidth, int firstWidth, bool isRightToLeft)
{
    const int firstMinimum = isRightToLeft ? minimumTabWidth : minimumTreeWidth;
    const int secondMinimum = isRightToLeft ? minimumTreeWidth : minimumTabWidth;
    // A split view that had no width yet gives no share to keep.
    const int proposed
        = oldWidth > 0 ? static_cast<int>(static_cast<qint64>(newWidth) * firstWidth / oldWidth) : firstWidth;
    const int first = std::min(newWidth - secondMinimum, std::max(firstMinimum, proposed));
    const int second = std::max(secondMinimum, newWidth - first) - dividerThickness;
    return { first, second };
}

} // namespace OutlineRules
