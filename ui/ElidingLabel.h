// SPDX-License-Identifier: MIT
//
// A label whose text never claims room: what does not fit is cut with an ellipsis and shown whole as a tool
// tip, unless the label has been given a tool tip of its own or wraps its words. What is selected of it is
// marked as far as it is shown, and a frame tells that it has the focus. Main thread only.
#pragma once

#include <QLabel>

class ElidingLabel : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(qreal fontScale READ fontScale WRITE setFontScale)
    Q_PROPERTY(Qt::TextElideMode elideMode READ elideMode WRITE setElideMode)
    Q_PROPERTY(bool vanishes READ vanishes WRITE setVanishes)

public:
    explicit ElidingLabel(QWidget *parent = nullptr);

    // How large the text is, as a multiple of the font around it. Set before the label is shown.
    qreal fontScale() const { return m_fontScale; }
    void setFontScale(qreal scale) { m_fontScale = scale; }

    // Where the dots stand in a text that is cut; at its end unless it is set.
    Qt::TextElideMode elideMode() const { return m_elideMode; }
    void setElideMode(Qt::TextElideMode mode) { m_elideMode = mode; }

    // Whether a text that does not fit is not drawn at all: it only explains what stands beside it.
    bool vanishes() const { return m_vanishes; }
    void setVanishes(bool vanishes) { m_vanishes = vanishes; }

    // As high for every script, so that the rows of a form lie at the same distance.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool isCut() const;

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void scaleFont();
    bool isBroken() const; // into lines
    void drawLines(QPainter &painter) const;

    qreal m_fontScale = 1;
    Qt::TextElideMode m_elideMode = Qt::ElideRight;
    bool m_vanishes = false;
};
