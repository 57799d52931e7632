// SPDX-License-Identifier: MIT
//
// Standard output and standard error without buffers, what asks diskutil to stop, and the reader of its
// output who leaves. Signals come from the event loop, never from within a write. A reader who takes nothing
// keeps diskutil waiting, and no signal. Main thread only.
#pragma once

#include "platform/FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>

class QSocketNotifier;

class Console : public QObject
{
    Q_OBJECT

public:
    explicit Console(QObject *parent = nullptr);

    // From now on, a byte on the standard input stops the run like a signal.
    void heedInput();

    // Writes a line to the standard output.
    void say(const QString &line);

    // Writes a question to the standard error, and leaves the line open for the answer.
    void ask(const QString &question);

    // Writes the bytes to the standard output as they are.
    void pass(const QByteArray &bytes);

    // Writes one line, with the program's name before it, to the standard error.
    void complain(const QString &line);

Q_SIGNALS:
    // The run is to end: a signal, or a byte on an input that is heeded. Emitted at most once. The reason is
    // a few words.
    void interrupted(const QString &reason);

    // Nobody reads the output any more, or the terminal has hung up (SIGHUP). Emitted at most once.
    void readerLeft(const QString &reason);

    // The service manager of the user ends what their session has left behind. The reader has left then, too.
    // Emitted at most once.
    void sessionEnded();

private:
    bool write(const FileDescriptor &own, int fd, QByteArrayView bytes);
    void awaitReader(int fd);
    void signalArrived();
    void inputArrived();
    void outputClosed();
    bool isHurried() const { return m_isInterrupted || m_hasLostReader; }
    void emitLater(std::function<void()> signal);
    void interrupt(const QString &reason);
    void loseReader(const QString &reason);
    void endWithSession(const QString &reason);

    FileDescriptor m_output; // the standard output and error, opened once more: they never block
    FileDescriptor m_errors;
    QSocketNotifier *m_signalNotifier = nullptr;
    QSocketNotifier *m_inputNotifier = nullptr; // while the input is heeded
    QSocketNotifier *m_outputNotifier = nullptr;
    bool m_isInterrupted = false;
    bool m_hasLostReader = false;
    bool m_hasSessionEnded = false;
    bool m_isOutputClosed = false;
    bool m_endsWithLine = true; // what has been written so far
};
