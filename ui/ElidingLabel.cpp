// SPDX-License-Identifier: MIT
#include "ui/ElidingLabel.h"

#include "ui/tool_tips.h"

#include <QFontInfo>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

ElidingLabel::ElidingLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

void ElidingLabel::scaleFont()
{
    QFont scaled = font();
    scaled.setPointSizeF(QFontInfo(parentWidget()->font()).pointSizeF() * m_fontScale);
    setFont(scaled);
}

QSize ElidingLabel::minimumSizeHint() const
{
    return { 0, QLabel::minimumSizeHint().height() };
}

bool ElidingLabel::isCut() const
{
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

void ElidingLabel::paintEvent(QPaintEvent *event)
{
    if (!isCut()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    // A device or a path reads from left to right in every window.
    painter.setLayoutDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(),
        static_cast<int>(QStyle::visualAlignment(layoutDirection(), alignment())), palette(), isEnabled(),
        shown, foregroundRole());
}

// Left to itself, a label whose text can be selected takes its side from the text's own direction.
void ElidingLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        setAlignment(
            Qt::AlignAbsolute | Qt::AlignVCenter | (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft));
}

bool ElidingLabel::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
        const auto *help = static_cast<QHelpEvent *>(event);
        QToolTip::showText(help->globalPos(), isCut() ? plainToolTip(text()) : QString(), this);
        return true;
    }
    // A label with a size of its own is not told when the font around it changes.
    if (event->type() == QEvent::Polish && !qFuzzyCompare(m_fontScale, 1)) {
        parentWidget()->installEventFilter(this);
        scaleFont();
    }
    return QLabel::event(event);
}

bool ElidingLabel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        scaleFont();
    return QLabel::eventFilter(watched, event);
}
