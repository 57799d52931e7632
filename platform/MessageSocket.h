// SPDX-License-Identifier: MIT
//
// One end of a connection between two processes, which hands over a message as a whole or not at all. Nothing
// here waits, unless it says so. Any thread.
#pragma once

#include "platform/FileDescriptor.h"

#include <QByteArray>

#include <chrono>
#include <utility>

class MessageSocket
{
public:
    MessageSocket() = default;
    // Takes a descriptor that may come from anybody: it is closed when it is no such socket.
    explicit MessageSocket(FileDescriptor descriptor);

    // Whether the descriptor is a socket of this kind. Asks nobody but the kernel.
    static bool isMessageSocket(int descriptor);

    // The two ends of a new connection; neither is open when it cannot be made.
    static std::pair<MessageSocket, MessageSocket> makePair();

    bool isOpen() const { return m_descriptor.isOpen(); }
    int number() const { return m_descriptor.number(); } // for what waits for it

    // Gives the socket away.
    FileDescriptor take() { return std::move(m_descriptor); }

    // False when the other end is gone, or does not read.
    bool send(const QByteArray &message) const;

    enum class Receipt { Message, Nothing, End };

    // Takes the next message that has come. One that is longer than this comes as an empty one.
    Receipt receive(QByteArray &message, qsizetype longest) const;

    // Waits until there is a message, no longer than this. False when there is none.
    bool waitForMessage(std::chrono::milliseconds limit) const;

private:
    FileDescriptor m_descriptor;
};
