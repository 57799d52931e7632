// SPDX-License-Identifier: MIT
//
// The authorisation service of the desktop: polkit, and pkexec for the start as root.
//
// The action is the one that pkexec asks for when it starts the installed program, and polkit keeps what it
// has granted to this process while it lives: the user is asked once.
#pragma once

#include "platform/Authorization.h"
#include "platform/FileDescriptor.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QObject>

#include <memory>

class QSocketNotifier;

class PolkitAuthorization : public QObject, public Authorization
{
    Q_OBJECT

public:
    explicit PolkitAuthorization(QObject *parent = nullptr);
    ~PolkitAuthorization() override;

    void create(StatusHandler handler) override;
    void copyRights(const QByteArray &program, StatusHandler handler) override;
    void executeWithPrivileges(
        const QByteArray &program, const QByteArrayList &arguments, std::function<void()> done) override;
    void free() override;

private:
    QDBusPendingCall call(const QDBusMessage &message) const;
    void askForAccessibilityBus();

    QDBusConnection m_bus;
    QByteArray m_accessibilityBus; // its address, where assistive technologies are in use
    FileDescriptor m_handoverSocket;
    std::unique_ptr<QSocketNotifier> m_handover;
};
