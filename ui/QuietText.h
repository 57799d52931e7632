// SPDX-License-Identifier: MIT
//
// Keeps the text of a widget in the colour for what stands back, whatever the palette becomes. Main thread
// only.
#pragma once

#include <QObject>

class QWidget;

class QuietText : public QObject
{
    Q_OBJECT

public:
    // From now on, until the widget goes.
    static void apply(QWidget *widget);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit QuietText(QWidget *widget);
    void color();

    QWidget *m_widget;
};
