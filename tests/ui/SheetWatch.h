// SPDX-License-Identifier: MIT
//
// Tells whether a medium was busy when a sheet opened: what there is to report is reported before an
// operation ends.
#pragma once

#include "disks/ZorvexDiskManagerDisk.h"
#include "ui/AlertSheet.h"

#include <QCoreApplication>
#include <QEvent>

class SheetWatch : public QObject
{
public:
    explicit SheetWatch(DiskRecord record)
        : m_record(std::move(record))
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<AlertSheet *>(watched))
            wasBusy.append(m_record->operationInProgress);
        return false;
    }

    QList<bool> wasBusy; // at each sheet, oldest first

private:
    DiskRecord m_record;
};
