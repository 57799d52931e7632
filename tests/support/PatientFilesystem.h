// SPDX-License-Identifier: MIT
//
// A file system of the test's own, dropped into the local directory, that serves ext4 volumes before all
// others. Its tools say that they have begun, then wait until the test lets them go on. For tests inside
// in-staged-root.
#pragma once

#include "tests/support/LoopDisk.h"

class PatientFilesystem
{
public:
    // The one of the maker's own has its label set after a format.
    static constexpr const char *plainName = "patient";
    static constexpr const char *ownName = "zorvex_patient";

    explicit PatientFilesystem(const QString &name = QString::fromLatin1(plainName));
    ~PatientFilesystem();
    PatientFilesystem(const PatientFilesystem &) = delete;
    PatientFilesystem &operator=(const PatientFilesystem &) = delete;

    void install();
    void remove();

    // Another script for the checker; the device is its last argument.
    void setVerifyTool(const QByteArray &script);
    // Another one for the formatter.
    void setFormatTool(const QByteArray &script);

    // Before the tools work on the disk's first volume, and to let one go on: it prints the answer.
    void makePipe(const LoopDisk &disk);
    void release(const LoopDisk &disk, const QByteArray &answer);

    bool hasFormatBegun() const;
    QString verifyTool() const; // the checker's path

private:
    QString m_name;
    QString m_bundle;
    QTemporaryDir m_pipes;
};
