// SPDX-License-Identifier: MIT
//
// Answers polkit's questions to the user of one process, as the dialog of a desktop does. It runs as root,
// which polkit believes without a password.
#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>

class PolkitAgent : public QDBusVirtualObject
{
public:
    enum class Answer { Grant, Dismiss, Fail };

    PolkitAgent(const QDBusConnection &bus, Answer answer);
    ~PolkitAgent() override;

    // Answers for the process, whoever it belongs to.
    bool registerFor(qint64 process);

    QStringList askedActions; // one for each dialog

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    void grant(const QDBusMessage &message);

    QDBusConnection m_bus;
    Answer m_answer;
};
