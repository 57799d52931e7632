// SPDX-License-Identifier: MIT
//
// A label whose text never claims room: what does not fit is cut with an ellipsis and shown whole as a tool
// tip, unless the label has been given a tool tip of its own. Main thread only.
#pragma once

#include <QLabel>

class ElidingLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidingLabel(QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;
    bool isCut() const;

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;
};
