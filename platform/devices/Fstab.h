// SPDX-License-Identifier: MIT
//
// What /etc/fstab has for the machine. Any thread.
#pragma once

#include "platform/SystemRoot.h"

#include <QByteArray>

#include <vector>

struct FstabEntry
{
    QByteArray source; // as it is written: a node, or a tag such as UUID=...
    QByteArray mountPoint; // cleaned of what does not change where it leads
    bool isSwap = false;
};

// The entries in their order; empty when the file cannot be read. A broken line is left out.
std::vector<FstabEntry> readFstab(const SystemRoot &system);
