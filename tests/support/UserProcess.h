// SPDX-License-Identifier: MIT
//
// Runs a program as another user, as their login session would, on a terminal of its own. It is held before
// it begins, so that an agent can be registered for it. For tests that are root.
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

#include <sys/types.h>
#include <vector>

struct TestUser
{
    QByteArray name; // empty for a user without one
    uid_t user = 0;
    gid_t group = 0;
};

// Adds the user, and the groups that they belong to beside their own, to the system's lists.
void addUser(const TestUser &user, const std::vector<gid_t> &groups);

class UserProcess : public QProcess
{
public:
    explicit UserProcess(const TestUser &user);
    ~UserProcess() override;

    const TestUser &user() const { return m_user; }

    // Starts the program and holds it; then lets it run.
    void startHeld(const QString &program, const QStringList &arguments);
    void release();

    // What it has written to its terminal.
    QByteArray terminalOutput();

private:
    TestUser m_user;
    int m_terminal = -1;
    int m_childTerminal = -1;
    QByteArray m_output;
};
