// SPDX-License-Identifier: MIT
//
// Which devices the tables in /etc mean. Any thread.
#pragma once

#include "platform/SystemRoot.h"

#include <QByteArray>

#include <sys/types.h>
#include <vector>

// The devices that this source names: a node, UUID=, LABEL=, PARTUUID= or PARTLABEL=. A tag names each device
// that carries it, the parts of one file system as well as copies. An encrypted volume that is locked stands
// for what would be unlocked on it, where /etc/crypttab has the name. Empty when there is no such device.
std::vector<dev_t> devicesNamed(const QByteArray &source, const SystemRoot &system);

// Whether the partition is of a type that holds boot files: ESP or XBOOTLDR.
bool isBootPartition(dev_t device, const SystemRoot &system);
