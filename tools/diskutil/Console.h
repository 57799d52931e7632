// SPDX-License-Identifier: MIT
//
// Standard output and standard error without buffers, and what asks diskutil to stop: a signal, or the reader
// of its output that has gone. Main thread only.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

class QSocketNotifier;

class Console : public QObject
{
    Q_OBJECT

public:
    explicit Console(QObject *parent = nullptr);

    // Writes a line to the standard output. May emit interrupted().
    void say(const QString &line);

    // Writes a question to the standard error, and leaves the line open for the answer.
    void ask(const QString &question);

    // Writes the bytes to the standard output as they are. May emit interrupted().
    void pass(const QByteArray &bytes);

    // Writes one line, with the program's name before it, to the standard error.
    void complain(const QString &line);

Q_SIGNALS:
    // Emitted at most once. The reason is a few words.
    void interrupted(const QString &reason);

private:
    void signalArrived();
    void outputClosed();
    void interrupt(const QString &reason);

    QSocketNotifier *m_signalNotifier = nullptr;
    QSocketNotifier *m_outputNotifier = nullptr;
    bool m_isInterrupted = false;
    bool m_endsWithLine = true; // what has been written so far
};
