// SPDX-License-Identifier: MIT
//
// The volumes that nobody asks to change while a step works on others: those of other disks, and those beside
// it on the same disk. A mounted file system writes by itself, and is left out.
#pragma once

#include "tests/soak/SoakWorld.h"

#include <QMap>

class Bystanders
{
public:
    // Remembers what is on the disks; the device nodes are those of the volumes that may change.
    Bystanders(const SoakWorld &world, const QStringList &nodes);

    // Fails where anything has changed.
    void requireUnchanged() const;

private:
    QMap<QString, std::size_t> m_digests; // by device node
};
