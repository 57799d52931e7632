// SPDX-License-Identifier: MIT
#include "ui/LinkTextView.h"

#include "ui/ToolTips.h"

#include <QAbstractTextDocumentLayout>
#include <QCursor>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace {

constexpr int mostLines = 2; // where there is room; what is longer scrolls

} // namespace

LinkTextView::LinkTextView(QWidget *parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setAcceptRichText(false);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setFrameStyle(QFrame::NoFrame);
    setWordWrapMode(QTextOption::WrapAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFocusPolicy(Qt::NoFocus);
    document()->setDocumentMargin(0);
    viewport()->setAutoFillBackground(false);
    viewport()->setMouseTracking(true);
    viewport()->unsetCursor();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
        &QWidget::updateGeometry);
}

void LinkTextView::setLink(const QString &text, const QColor &color, const QFont &linkFont)
{
    // The same link stays as it is, with a click that is half done and with what is selected of it.
    if (m_text == text && m_color == color && m_font == linkFont)
        return;
    m_text = text;
    m_color = color;
    m_font = linkFont;
    setPlainText(text);
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    QTextCharFormat format;
    format.setForeground(color);
    format.setFontUnderline(true);
    format.setFont(linkFont, QTextCharFormat::FontPropertiesSpecifiedOnly);
    cursor.mergeCharFormat(format);
    cursor.endEditBlock();
    showPointerAt(viewport()->mapFromGlobal(QCursor::pos()));
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(plainToolTip(text));
    Q_EMIT hasLinkChanged(true);
}

void LinkTextView::clearLink()
{
    clear();
    m_text.clear();
    viewport()->unsetCursor();
    // There is nothing to follow: the keyboard goes on from here.
    if (window()->focusWidget() == this)
        focusNextChild();
    setFocusPolicy(Qt::NoFocus);
    setToolTip({});
    Q_EMIT hasLinkChanged(false);
}

LinkTextView::Selection LinkTextView::selection() const
{
    const QTextCursor cursor = textCursor();
    return { cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart() };
}

qsizetype LinkTextView::textLength() const
{
    return document()->characterCount() - 1; // a document ends in a line end of its own
}

QSize LinkTextView::sizeHint() const
{
    const int line = fontMetrics().lineSpacing();
    const int height = static_cast<int>(std::ceil(document()->size().height()));
    return { 100, std::clamp(height, line, line * mostLines) };
}

QSize LinkTextView::minimumSizeHint() const
{
    return { 100, fontMetrics().lineSpacing() };
}

// A path reads from left to right in every window, and stands at the side of its caption.
void LinkTextView::changeEvent(QEvent *event)
{
    QTextEdit::changeEvent(event);
    if (event->type() != QEvent::LayoutDirectionChange)
        return;
    QTextOption option = document()->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight);
    option.setAlignment(Qt::AlignAbsolute | (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft));
    document()->setDefaultTextOption(option);
}

// A hand on the text itself, and not beside it in its line.
void LinkTextView::showPointerAt(const QPoint &position)
{
    const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
    const bool isOnText = document()->documentLayout()->hitTest(position + scrolled, Qt::ExactHit) >= 0;
    if (isOnText && !m_text.isEmpty())
        viewport()->setCursor(Qt::PointingHandCursor);
    else
        viewport()->unsetCursor();
}

void LinkTextView::mouseMoveEvent(QMouseEvent *event)
{
    QTextEdit::mouseMoveEvent(event);
    showPointerAt(event->position().toPoint());
}

void LinkTextView::mouseReleaseEvent(QMouseEvent *event)
{
    QTextEdit::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton)
        Q_EMIT selectionDidChange();
}

// From the keyboard the link is followed as links are: with Return, wherever the insertion point stands.
void LinkTextView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        QTextEdit::keyPressEvent(event);
        return;
    }
    if (textLength() == 0)
        return;
    QTextCursor cursor = textCursor();
    cursor.setPosition(1);
    setTextCursor(cursor);
    Q_EMIT selectionDidChange();
}

// What is copied or dragged away is pasted where a path is wanted, and nobody sees that it has controls.
QMimeData *LinkTextView::createMimeDataFromSelection() const
{
    const QTextCursor selected = textCursor();
    QTextCursor link(document());
    link.setPosition(std::max(selected.selectionStart(), 1));
    link.setPosition(
        std::min(selected.selectionEnd(), static_cast<int>(textLength()) - 1), QTextCursor::KeepAnchor);
    auto *copied = new QMimeData;
    copied->setText(link.selectedText().replace(QChar::ParagraphSeparator, u'\n'));
    return copied;
}
