// SPDX-License-Identifier: MIT
//
// What systemd mounts on demand. Any thread.
#pragma once

#include "platform/SystemRoot.h"

#include <QByteArray>

// The source in the mount unit for this mount point; empty when there is no such unit.
QByteArray sourceOfMountUnit(const QByteArray &mountPoint, const SystemRoot &system);
