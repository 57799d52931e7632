// SPDX-License-Identifier: MIT
#include "ui/FormatMenuDelegate.h"

#include "ui/color_rules.h"
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
    painter->setPen(ColorRules::mix(option.palette.color(QPalette::Active, QPalette::Text),
        option.palette.color(QPalette::Active, QPalette::Base), 0.66)); // to be read, unlike the title
    const int side = option.direction == Qt::RightToLeft ? Qt::AlignLeft : Qt::AlignRight;
    painter->drawText(option.rect.adjusted(units(gap), 0, -units(gap), 0),
        side | Qt::AlignVCenter | Qt::AlignAbsolute, reason);
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

// Titles begin on one line, with an icon or without.
void FormatMenuDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.siblingAtRow(0).data(Qt::DecorationRole).isValid())
        option->features |= QStyleOptionViewItem::HasDecoration;
}
