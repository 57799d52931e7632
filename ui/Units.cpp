// SPDX-License-Identifier: MIT
#include "ui/Units.h"

#include <QApplication>
#include <QFontInfo>

namespace {

constexpr qreal usualTextPixels = 13;

} // namespace

qreal textScale()
{
    return QFontInfo(QApplication::font()).pixelSize() / usualTextPixels;
}

int units(qreal count)
{
    return qRound(count * textScale());
}
