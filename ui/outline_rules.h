// SPDX-License-Identifier: MIT
//
// Frames of the mirrored outline view and widths of the split view's panes, in device-independent pixels.
// Functions of values, any thread.
#pragma once

#include <QRect>

#include <optional>

namespace OutlineRules {

// From this generation of the system on a mirrored outline view moves its frames and is fitted to its
// container.
inline constexpr unsigned long firstMirroringGeneration = 9;

// A generation that is not known counts as an old one.
bool mirrorsFrames(std::optional<unsigned long> generation);

QRect flippedTriangleFrame(const QRect &base, int viewWidth, std::optional<unsigned long> generation);
QRect flippedCellFrame(const QRect &base, std::optional<unsigned long> generation);

inline constexpr int minimumTreeWidth = 200;
inline constexpr int minimumTabWidth = 400;
inline constexpr int dividerThickness = 8;

// Limits of the divider's position.
int minimumDividerPosition(bool isRightToLeft);
int maximumDividerPosition(int splitViewWidth, bool isRightToLeft);

// Not rounded: a share that is rounded at every step of a resize gets lost on the way.
struct PaneWidths
{
    qreal first = 0;
    qreal second = 0;
};

// Widths of the panes after the split view has got a new width. The first keeps its share. If there is no
// room for both minimums, the second pane's wins.
PaneWidths resizedPaneWidths(int oldWidth, int newWidth, qreal firstWidth, bool isRightToLeft);

} // namespace OutlineRules
