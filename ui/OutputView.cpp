// SPDX-License-Identifier: MIT
#include "ui/OutputView.h"

#include "ui/output_rules.h"
#include "ui/Units.h"

#include <QEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextOption>

OutputView::OutputView(QWidget *parent)
    : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setLayoutDirection(Qt::LeftToRight);
    setTabChangesFocus(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QTextOption option = document()->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::WrapAnywhere);
    document()->setDefaultTextOption(option);
    layOut();
}

void OutputView::layOut()
{
    constexpr int margin = 7; // units
    document()->setDocumentMargin(units(margin));
}

void OutputView::changeEvent(QEvent *event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        layOut();
}

void OutputView::setOutput(const QByteArray &wholeOutput)
{
    const QByteArray output = OutputRules::shownPart(wholeOutput);
    if (output == m_output)
        return;
    QScrollBar *const bar = verticalScrollBar();
    const bool followsEnd = bar->value() >= bar->maximum();
    const int position = bar->value();

    const OutputRules::Change change = OutputRules::changeBetween(m_output, output);
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    cursor.setPosition(document()->findBlockByNumber(change.firstBlock).position());
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.insertText(change.text);
    cursor.endEditBlock();
    m_output = output;
    bar->setValue(followsEnd ? bar->maximum() : position);
}
