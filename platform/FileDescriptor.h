// SPDX-License-Identifier: MIT
//
// The owner of an open file or socket, which is closed with it.
#pragma once

#include <unistd.h>
#include <utility>

class FileDescriptor
{
public:
    FileDescriptor() = default;
    // Takes the result of open(2), socket(2) or the like; a negative one stands for nothing.
    explicit FileDescriptor(int number)
        : m_number(number)
    {
    }
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        FileDescriptor old(std::exchange(m_number, std::exchange(other.m_number, -1)));
        return *this;
    }
    ~FileDescriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; } // negative when it is not open

private:
    int m_number = -1;
};
