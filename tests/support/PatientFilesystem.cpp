// SPDX-License-Identifier: MIT
#include "tests/support/PatientFilesystem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray information = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>CFBundleIdentifier</key><string>org.example.patient</string>
<key>FSLinuxTypes</key><array><string>ext4</string></array>
<key>FSProbeOrder</key><integer>1</integer>
<key>FSPersonalities</key><dict><key>Patient</key><dict>
<key>FSName</key><string>Patient</string>
<key>FSFormatExecutable</key><string>format</string>
<key>FSVerificationExecutable</key><string>verify</string>
</dict></dict></dict></plist>
)";

const QByteArray patientVerifyTool = R"sh(#!/bin/sh
echo "looking at $1"
read -r answer <"PIPES/$(basename "$1")"
echo "$answer"
)sh";

const QByteArray formatTool = R"sh(#!/bin/sh
for device; do :; done
: >"PIPES/begun"
read -r answer <"PIPES/$(basename "$device")"
exec mkfs.ext4 -q -F -L "$2" "$device"
)sh";

void writeFile(const QString &path, const QByteArray &content, mode_t mode)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
    file.close();
    chmod(QFile::encodeName(path).constData(), mode);
}

} // namespace

PatientFilesystem::PatientFilesystem(const QString &name)
    : m_name(name)
    , m_bundle(u"/Library/Filesystems/%1.fs"_s.arg(name))
{
    install();
}

PatientFilesystem::~PatientFilesystem()
{
    remove();
}

void PatientFilesystem::install()
{
    setVerifyTool(patientVerifyTool);
    setFormatTool(formatTool);
    writeFile(m_bundle + u"/Contents/Info.plist"_s, information, 0644);
}

void PatientFilesystem::remove()
{
    QDir(m_bundle).removeRecursively();
}

void PatientFilesystem::setVerifyTool(const QByteArray &script)
{
    writeFile(verifyTool(), QByteArray(script).replace("PIPES", m_pipes.path().toUtf8()), 0755);
}

void PatientFilesystem::setFormatTool(const QByteArray &script)
{
    writeFile(m_bundle + u"/Contents/Resources/format"_s,
        QByteArray(script).replace("PIPES", m_pipes.path().toUtf8()), 0755);
}

void PatientFilesystem::makePipe(const LoopDisk &disk)
{
    const QString path = m_pipes.filePath(QFileInfo(disk.node(1)).fileName());
    QFile::remove(path);
    QFile::remove(m_pipes.filePath(u"begun"_s));
    if (mkfifo(QFile::encodeName(path).constData(), 0600) != 0)
        qFatal("cannot make %s", qPrintable(path));
}

void PatientFilesystem::release(const LoopDisk &disk, const QByteArray &answer)
{
    QFile pipe(m_pipes.filePath(QFileInfo(disk.node(1)).fileName()));
    if (!pipe.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || pipe.write(answer + '\n') < 0)
        qFatal("cannot write to a pipe");
}

bool PatientFilesystem::hasFormatBegun() const
{
    return QFile::exists(m_pipes.filePath(u"begun"_s));
}

QString PatientFilesystem::verifyTool() const
{
    return m_bundle + u"/Contents/Resources/verify"_s;
}
