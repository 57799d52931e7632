// SPDX-License-Identifier: MIT
//
// How the window that runs as root goes on to look as the user's desktop does: a process of the user's tells
// of each look that there is, and the window takes it as it took the first one. Main thread only.
#pragma once

#include "app/DesktopLook.h"
#include "platform/MessageSocket.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <QWindow>

#include <memory>

// In the user's process.
class LookTeller : public QObject
{
    Q_OBJECT

public:
    // Tells the look of this process, now and after each change. Once there is a QApplication.
    explicit LookTeller(MessageSocket socket);

Q_SIGNALS:
    // Nobody listens any more.
    void listenerHasGone();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void tell();
    void readEnd();

    MessageSocket m_socket;
    QSocketNotifier m_notifier;
    QWindow m_window; // never shown; windows are told of another theme
    QTimer m_timer; // until all that changes together has changed
    QByteArray m_told;
};

// In the process of the window.
class LookFollower : public QObject
{
    Q_OBJECT

public:
    // The socket may come from anybody.
    explicit LookFollower(FileDescriptor socket);

    // What has been told last; says nothing of the look when nothing was told.
    DesktopLook latest();

    // Applies what is told from now on. What is not a look changes nothing, nor does the end of the process
    // that tells. Once there is a QApplication.
    void follow();

private:
    void readAndApply();

    MessageSocket m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_timer;
};
