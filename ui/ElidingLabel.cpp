// SPDX-License-Identifier: MIT
#include "ui/ElidingLabel.h"

#include "ui/direction_rules.h"
#include "ui/FocusFrame.h"
#include "ui/ToolTips.h"

#include <QFontInfo>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QTextOption>
#include <QToolTip>

#include <algorithm>

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

QSize ElidingLabel::sizeHint() const
{
    const QSize hint = QLabel::sizeHint();
    return { hint.width(), std::max(hint.height(), fontMetrics().height()) };
}

QSize ElidingLabel::minimumSizeHint() const
{
    return { 0, sizeHint().height() };
}

bool ElidingLabel::isCut() const
{
    return !wordWrap() && fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

// Qt's own label moves a mirrored line by the space at which it was broken, out of the label.
bool ElidingLabel::isBroken() const
{
    constexpr Qt::TextInteractionFlags selectable = Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;
    return wordWrap() && !textInteractionFlags().testAnyFlags(selectable);
}

void ElidingLabel::drawLines(QPainter &painter) const
{
    const QRect room = contentsRect();
    // What is cut off may hold the end of a part that has a direction of its own.
    const QString shown = isCut()
        ? DirectionRules::withPartsClosed(fontMetrics().elidedText(text(), m_elideMode, room.width()))
        : text();
    QTextLayout layout(shown, font());
    QTextOption option(QStyle::visualAlignment(layoutDirection(), alignment()) | Qt::AlignAbsolute);
    // A device or a path reads from left to right in every window.
    option.setTextDirection(text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    option.setWrapMode(wordWrap() ? QTextOption::WordWrap : QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    qreal height = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(room.width());
        line.setPosition({ 0, height });
        height += line.height();
    }
    layout.endLayout();
    QList<QTextLayout::FormatRange> selections;
    if (hasSelectedText()) {
        QTextCharFormat marked;
        marked.setBackground(palette().highlight());
        marked.setForeground(palette().highlightedText());
        selections.append({ selectionStart(), static_cast<int>(selectedText().size()), marked });
    }
    painter.setPen(palette().color(foregroundRole()));
    layout.draw(&painter, QPointF(room.x(), room.y() + (room.height() - height) / 2), selections);
}

void ElidingLabel::paintEvent(QPaintEvent *event)
{
    const bool drawsItself = isCut() || isBroken();
    if (!drawsItself)
        QLabel::paintEvent(event);
    QPainter painter(this);
    if (drawsItself && !(isCut() && m_vanishes))
        drawLines(painter);
    if (hasFocus())
        drawFocusFrame(painter, *this, rect());
}

// By default, a label whose text can be selected takes its side from the text's own direction.
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
