// SPDX-License-Identifier: MIT
//
// A piece of work on a medium, from its first check to its last line. Main thread only.
#pragma once

#include "platform/DiskArbitration.h"
#include "tools/diskutil/ExitCode.h"

#include <QObject>

class Job : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Begins. finished() may be emitted before this returns.
    virtual void start() = 0;

    // Ends the job as soon as nothing is at work on the medium, and mounts again what can be mounted. The
    // reason is a few words. May be called from within a slot of said().
    virtual void interrupt(const QString &reason) = 0;

    // Tells that nobody reads what the job says any more. A job that only reads the medium, or has not begun
    // to write, is interrupted; one that has begun to write goes on to its end. May be called like
    // interrupt().
    virtual void loseReader(const QString &reason) = 0;

    // Tells that a medium's description has changed.
    virtual void mediumChanged(const DADiskRef &disk) = 0;

Q_SIGNALS:
    // A line of the job's course, and one that says why something was not done.
    void said(const QString &line);
    void complained(const QString &line);

    // Emitted once.
    void finished(ExitCode code);
};
