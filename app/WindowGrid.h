// SPDX-License-Identifier: MIT
//
// The distances and sizes of the window's pages, which grow with the text. Main thread only.
#pragma once

#include "ui_MainWindow.h"

#include <QObject>

class WindowGrid : public QObject
{
    Q_OBJECT

public:
    // Lays the window out, and again whenever its font changes. The window owns it.
    static void install(const Ui::MainWindow &ui, QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    WindowGrid(const Ui::MainWindow &ui, QWidget *window);
    void layOut();
    void layOutInfoPage();

    Ui::MainWindow m_ui;
};
