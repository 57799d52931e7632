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

public:
    explicit ElidingLabel(QWidget *parent = nullptr);

    // How large the text is, as a multiple of the font around it. Set before the label is shown.
    qreal fontScale() const { return m_fontScale; }
    void setFontScale(qreal scale) { m_fontScale = scale; }

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
    void drawCutText(QPainter &painter) const;

    qreal m_fontScale = 1;
};
