// SPDX-License-Identifier: MIT
#include "ui/FormatMenuDelegate.h"

#include "ui/Units.h"

#include <QComboBox>
#include <QPainter>
#include <QStandardItemModel>

#include <algorithm>

namespace {

constexpr int rowHeight = 26; // units
constexpr int gap = 10; // units, at the end of the row and between title and reason
constexpr qreal smallText = 12.0 / 13;

QString reasonOf(const QModelIndex &index)
{
    return index.data(Qt::AccessibleDescriptionRole).toString();
}

QFont fontOfReason(const QFont &font)
{
    QFont small = font;
    small.setPointSizeF(font.pointSizeF() * smallText);
    return small;
}

} // namespace

void FormatMenuDelegate::install(QComboBox *menu)
{
    menu->setItemDelegate(new FormatMenuDelegate(menu));
}

void FormatMenuDelegate::enableItem(QComboBox &menu, int row, const QString &reason)
{
    QStandardItem *const item = qobject_cast<QStandardItemModel *>(menu.model())->item(row);
    item->setEnabled(reason.isEmpty());
    item->setToolTip(reason);
    item->setAccessibleDescription(reason);
}

void FormatMenuDelegate::paint(
    QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    const QString reason = reasonOf(index);
    if (reason.isEmpty())
        return;
    painter->save();
    painter->setFont(fontOfReason(option.font));
    painter->setPen(option.palette.color(QPalette::Disabled, QPalette::Text));
    const int side = option.direction == Qt::RightToLeft ? Qt::AlignLeft : Qt::AlignRight;
    painter->drawText(option.rect.adjusted(units(gap), 0, -units(gap), 0), side | Qt::AlignVCenter, reason);
    painter->restore();
}

QSize FormatMenuDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    const QString reason = reasonOf(index);
    if (!reason.isEmpty())
        size.rwidth() += QFontMetrics(fontOfReason(option.font)).horizontalAdvance(reason) + 2 * units(gap);
    size.setHeight(std::max(size.height(), units(rowHeight)));
    return size;
}
