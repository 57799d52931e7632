// SPDX-License-Identifier: MIT
//
// A read-only line of text that can be styled as a link. It does not know what it links to: it reports where
// it is clicked as a change of its selection. Its first and its last character are controls that keep its
// direction: they count in positions, and are left out of what is copied. Main thread only.
#pragma once

#include <QTextEdit>

class LinkTextView : public QTextEdit
{
    Q_OBJECT

public:
    struct Selection
    {
        qsizetype location = 0;
        qsizetype length = 0;
    };

    explicit LinkTextView(QWidget *parent = nullptr);

    // Replaces the text, which stands between its controls; it is underlined and drawn in this colour and
    // font. Over it, the pointer is a hand.
    void setLink(const QString &text, const QColor &color, const QFont &linkFont);

    void clearLink();

    Selection selection() const;
    qsizetype textLength() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // The user has clicked or dragged; also told when the selection is where it was before.
    void selectionDidChange();

    // A link has come, or has gone.
    void hasLinkChanged(bool hasLink);

protected:
    void changeEvent(QEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    QMimeData *createMimeDataFromSelection() const override;

private:
    void showPointerAt(const QPoint &position);

    QString m_text; // of the link that is shown; empty for none
    QColor m_color;
    QFont m_font;
};
