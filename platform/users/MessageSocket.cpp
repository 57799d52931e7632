// SPDX-License-Identifier: MIT
#include "platform/MessageSocket.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

namespace {

int optionOf(int descriptor, int option)
{
    int value = -1;
    socklen_t size = sizeof value;
    return getsockopt(descriptor, SOL_SOCKET, option, &value, &size) == 0 ? value : -1;
}

} // namespace

MessageSocket::MessageSocket(FileDescriptor descriptor)
    : m_descriptor(isMessageSocket(descriptor.number()) ? std::move(descriptor) : FileDescriptor())
{
}

bool MessageSocket::isMessageSocket(int descriptor)
{
    return optionOf(descriptor, SO_DOMAIN) == AF_UNIX && optionOf(descriptor, SO_TYPE) == SOCK_SEQPACKET;
}

std::pair<MessageSocket, MessageSocket> MessageSocket::makePair()
{
    std::array<int, 2> ends { -1, -1 };
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return {};
    return { MessageSocket(FileDescriptor(ends[0])), MessageSocket(FileDescriptor(ends[1])) };
}

bool MessageSocket::send(const QByteArray &message) const
{
    const auto size = static_cast<std::size_t>(message.size());
    return ::send(number(), message.constData(), size, MSG_NOSIGNAL | MSG_DONTWAIT) == message.size();
}

MessageSocket::Receipt MessageSocket::receive(QByteArray &message, qsizetype longest) const
{
    message.resize(longest);
    const ssize_t size
        = recv(number(), message.data(), static_cast<std::size_t>(longest), MSG_DONTWAIT | MSG_TRUNC);
    const bool isLater = size < 0 && (errno == EAGAIN || errno == EINTR);
    message.truncate(size > 0 && size <= longest ? size : 0);
    if (size > 0)
        return Receipt::Message;
    return isLater ? Receipt::Nothing : Receipt::End;
}

bool MessageSocket::waitForMessage(std::chrono::milliseconds limit) const
{
    pollfd waited { number(), POLLIN, 0 };
    char first = 0;
    return poll(&waited, 1, static_cast<int>(limit.count())) == 1
        && recv(number(), &first, sizeof first, MSG_DONTWAIT | MSG_PEEK) > 0;
}
