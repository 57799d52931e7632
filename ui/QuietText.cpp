// SPDX-License-Identifier: MIT
#include "ui/QuietText.h"

#include "ui/color_rules.h"

#include <QEvent>
#include <QWidget>

void QuietText::apply(QWidget *widget)
{
    new QuietText(widget);
}

QuietText::QuietText(QWidget *widget)
    : QObject(widget)
    , m_widget(widget)
{
    // A widget with a colour of its own is not told when the one around it changes.
    widget->parentWidget()->installEventFilter(this);
    color();
}

void QuietText::color()
{
    QPalette palette; // of this one colour
    for (const QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled })
        palette.setColor(
            group, QPalette::WindowText, ColorRules::quietText(m_widget->parentWidget()->palette()));
    m_widget->setPalette(palette);
}

bool QuietText::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        color();
    return QObject::eventFilter(watched, event);
}
