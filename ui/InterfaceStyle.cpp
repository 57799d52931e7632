// SPDX-License-Identifier: MIT
#include "ui/InterfaceStyle.h"

#include "platform/Localization.h"
#include "ui/direction_rules.h"

#include <QApplication>

void InterfaceStyle::install()
{
    if (!qobject_cast<InterfaceStyle *>(QApplication::style()))
        QApplication::setStyle(new InterfaceStyle(QApplication::style()->name()));
}

int InterfaceStyle::styleHint(
    StyleHint hint, const QStyleOption *option, const QWidget *widget, QStyleHintReturn *returnData) const
{
    if (hint == SH_UnderlineShortcut && DirectionRules::joinsLetters(localizationInUse()))
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}
