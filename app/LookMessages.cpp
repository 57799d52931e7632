// SPDX-License-Identifier: MIT
#include "app/LookMessages.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace {

constexpr std::chrono::milliseconds settlingTime { 100 };

// However often somebody tells of a look, the window has this time for everything else.
constexpr std::chrono::milliseconds restBetweenLooks { 250 };
constexpr int mostMessagesAtOnce = 64;

bool isChangeOfLook(QEvent::Type type)
{
    return type == QEvent::ApplicationPaletteChange || type == QEvent::ApplicationFontChange
        || type == QEvent::ThemeChange;
}

} // namespace

LookTeller::LookTeller(MessageSocket socket)
    : m_socket(std::move(socket))
    , m_notifier(m_socket.number(), QSocketNotifier::Read)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(settlingTime);
    connect(&m_timer, &QTimer::timeout, this, &LookTeller::tell);
    connect(&m_notifier, &QSocketNotifier::activated, this, &LookTeller::readEnd);
    QCoreApplication::instance()->installEventFilter(this);
    tell();
}

void LookTeller::tell()
{
    const QByteArray look = DesktopLook::ofThisProcess().toText();
    if (look == m_told)
        return;
    if (m_socket.send(look))
        m_told = look;
    else
        m_timer.start(); // until it is taken, or the other end is gone
}

// The other side says nothing.
void LookTeller::readEnd()
{
    QByteArray message;
    if (m_socket.receive(message, 1) != MessageSocket::Receipt::End)
        return;
    m_notifier.setEnabled(false);
    Q_EMIT listenerHasGone();
}

bool LookTeller::eventFilter(QObject *watched, QEvent *event)
{
    if (isChangeOfLook(event->type()))
        m_timer.start();
    return QObject::eventFilter(watched, event);
}

LookFollower::LookFollower(FileDescriptor socket)
    : m_socket(std::move(socket))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(restBetweenLooks);
    connect(&m_timer, &QTimer::timeout, this, [this] { m_notifier->setEnabled(true); });
}

DesktopLook LookFollower::latest()
{
    QByteArray last;
    QByteArray message;
    MessageSocket::Receipt receipt = MessageSocket::Receipt::Nothing;
    for (int count = 0; count < mostMessagesAtOnce && m_socket.isOpen(); ++count) {
        receipt = m_socket.receive(message, DesktopLook::longestText);
        if (receipt != MessageSocket::Receipt::Message)
            break;
        if (!message.isEmpty())
            last = message;
    }
    if (receipt == MessageSocket::Receipt::End)
        m_socket = MessageSocket();
    return DesktopLook::fromText(last);
}

void LookFollower::follow()
{
    if (!m_socket.isOpen())
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_socket.number(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &LookFollower::readAndApply);
}

void LookFollower::readAndApply()
{
    m_notifier->setEnabled(false);
    latest().apply();
    if (m_socket.isOpen())
        m_timer.start();
}
