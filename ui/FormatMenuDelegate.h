// SPDX-License-Identifier: MIT
//
// The items of a menu of file systems. One that does not fit the disk is disabled and says why: at its end,
// in its tip and to a screen reader. Main thread only.
#pragma once

#include <QStyledItemDelegate>

class QComboBox;

class FormatMenuDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // Has the menu's items drawn by a delegate of its own.
    static void install(QComboBox *menu);

    // Disables the item for this reason; enables it when there is none.
    static void enableItem(QComboBox &menu, int row, const QString &reason);

    void paint(
        QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    using QStyledItemDelegate::QStyledItemDelegate;
};
