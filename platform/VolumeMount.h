// SPDX-License-Identifier: MIT
//
// How a volume is mounted, as far as the disk service can mount it in the same way again. Any thread.
#pragma once

#include "platform/SystemRoot.h"

#include <QString>
#include <QStringList>

#include <vector>

struct VolumeMount
{
    QString place;
    bool isServices = false; // the disk service mounted it, or would do the same because of /etc/fstab
    QString user; // for whom it is mounted, and who may unmount it; empty where that makes no difference
    QStringList options; // that the service has to be asked for; the others it adds by itself
};

// The mounts of the device in the kernel's order; none when it is no block device.
std::vector<VolumeMount> readVolumeMounts(const QString &deviceNode, const SystemRoot &system = {});
