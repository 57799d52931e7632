// SPDX-License-Identifier: MIT
//
// The controller with its real window on the machine's own services. For tests on loop disks of their own.
#pragma once

#include "app/ZorvexDiskManagerAppDelegate.h"

#include <QMainWindow>

#include <sys/types.h>

class RealWindow
{
public:
    // Shows the window in this language and finishes the launch.
    explicit RealWindow(const QString &localization = QStringLiteral("en"));
    ~RealWindow();

    ZorvexDiskManagerAppDelegate &controller() { return *m_controller; }
    QMainWindow &window() { return *m_window; }

    // The record of the device node, null while it has no row.
    DiskRecord recordOf(const QString &deviceNode) const;

    // The BSD names of all rows, from the top; and the device nodes of the rows of one disk.
    QStringList rowNames() const;
    QStringList nodesOfDisk(const QString &wholeNode) const;

    void select(const DiskRecord &disk);

    // The open sheets, oldest first; and presses the button with this return code on the oldest.
    QList<AlertSheet *> sheets() const;
    void endSheet(int returnCode);

private:
    std::unique_ptr<ZorvexDiskManagerAppDelegate> m_controller;
    std::unique_ptr<QMainWindow> m_window;
};

// The disk service on the bus that the window uses; 0 while there is none.
pid_t diskServicePid();

// Where the machine's own table says that the device is mounted.
QStringList mountPointsOf(const QString &deviceNode);

// The value that a low-level probe of the device finds, such as TYPE or LABEL; empty when there is none.
QString probed(const QString &deviceNode, const QString &tag);

// Runs a program and waits for its end; its exit code, with what it printed in output.
int runProgram(const QString &program, const QStringList &arguments, QByteArray *output = nullptr);
