// SPDX-License-Identifier: MIT
//
// Where facts about the machine are read. By default, that is the running system. Anything else is a folder
// with sys/, proc/, etc/ and run/ in it, and a function that says what device nodes are, because only root
// can make one. Any thread.
#pragma once

#include <QByteArray>

#include <functional>
#include <optional>
#include <sys/stat.h>

// stat(2): links are followed. Returns std::nullopt when there is no such file, or when it cannot be reached.
std::optional<struct stat> readFileStatus(const QByteArray &path);

struct SystemRoot
{
    QByteArray folder; // stands before /sys, /proc, /etc and /run; empty for the running system
    std::function<std::optional<struct stat>(const QByteArray &path)> fileStatus = readFileStatus;
};
