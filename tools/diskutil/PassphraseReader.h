// SPDX-License-Identifier: MIT
//
// Reads a passphrase: a line from the terminal, which does not show what is typed, or the first line of
// another standard input. It never waits, and overwrites what it has read. Main thread only.
#pragma once

#include "platform/Passphrase.h"

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

class QSocketNotifier;

class PassphraseReader : public QObject
{
    Q_OBJECT

public:
    // Reads from the standard input unless it is given another descriptor, which stays the caller's.
    explicit PassphraseReader(int input = 0, QObject *parent = nullptr);
    ~PassphraseReader() override;

    // Whether there is somebody who can be asked again.
    bool isTerminal() const;

    // Reads one line and runs done once, later; without a passphrase when the line is empty, too long or no
    // UTF-8, or when the input has ended. One reading at a time.
    void read(std::function<void(std::optional<Passphrase> passphrase)> done);

private:
    class QuietTerminal;

    void takeByte();
    void finish();

    const int m_input;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::unique_ptr<QuietTerminal> m_terminal; // while a line is being typed
    QByteArray m_line;
    bool m_isTooLong = false;
    std::function<void(std::optional<Passphrase>)> m_done;
};
