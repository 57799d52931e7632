// SPDX-License-Identifier: MIT
#include "tests/support/LoopDisk.h"

#include "platform/FileDescriptor.h"
#include "platform/MountTable.h"
#include "tests/support/RealWindow.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int mebibyte = 1024 * 1024;

void run(const QString &program, const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(-1);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        qFatal("%s %s: %s", qPrintable(program), qPrintable(arguments.join(u' ')),
            process.readAll().constData());
}

void format(const QString &node, const QString &filesystem, const QString &label)
{
    if (filesystem == "ext4"_L1)
        run(u"mkfs.ext4"_s, { u"-q"_s, u"-F"_s, u"-L"_s, label, node });
    else if (filesystem == "ntfs"_L1)
        run(u"mkntfs"_s, { u"-Q"_s, u"-F"_s, u"-L"_s, label, node });
    else if (filesystem == "exfat"_L1)
        run(u"mkfs.exfat"_s, { u"-L"_s, label, node });
    else if (filesystem == "vfat"_L1)
        run(u"mkfs.vfat"_s, { u"-n"_s, label, node });
}

// Waits until udev has looked at every device. Under load, udev sometimes hangs up without an answer.
void settleUdev()
{
    const QDeadlineTimer limit(20000);
    QByteArray output;
    while (runProgram(u"udevadm"_s, { u"settle"_s }, &output) != 0) {
        if (limit.hasExpired())
            qFatal("udev still has events to handle: %s", output.constData());
    }
}

bool hasPartitions(const QString &node)
{
    const QString name = QFileInfo(node).fileName();
    return !QDir(u"/sys/block/"_s + name).entryList({ name + u"p*" }, QDir::Dirs).isEmpty();
}

// Partitions that were added by hand outlive the disk unless they are deleted. The kernel refuses while
// someone has one open, as the disk service has for a moment to look at a volume that it was told of.
void deletePartitions(const QString &node)
{
    const QDeadlineTimer limit(20000);
    while (hasPartitions(node)) {
        QByteArray output;
        runProgram(u"partx"_s, { u"--delete"_s, node }, &output);
        if (limit.hasExpired() && hasPartitions(node))
            qFatal("the partitions of %s stay: %s", qPrintable(node), output.constData());
    }
}

// Whether diskutil works on the device.
bool isLocked(const QString &node)
{
    const FileDescriptor device(
        ::open(QFile::encodeName(node).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return device.number() >= 0 && ::flock(device.number(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

// What everybody sees of a partition whose disk has been pulled.
void pretendRemoval(const QString &node)
{
    QFile event(u"/sys/class/block/%1/uevent"_s.arg(QFileInfo(node).fileName()));
    if (!QFile::remove(node) || !event.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
        || event.write("remove") < 0)
        qFatal("%s does not go", qPrintable(node));
}

} // namespace

LoopDisk::LoopDisk(const QList<Partition> &partitions)
    : m_image(m_folder.filePath(u"disk.img"_s))
    , m_partitionCount(static_cast<int>(partitions.size()))
{
    QByteArray table = "label: gpt\n";
    qint64 size = 4;
    for (const Partition &partition : partitions) {
        table += "size=" + QByteArray::number(partition.sizeMiB)
            + "MiB, type=" + partition.typeGuid.toLatin1() + ", name=\"" + partition.label.toUtf8() + "\"\n";
        size += partition.sizeMiB;
    }
    QFile image(m_image);
    if (!image.open(QIODevice::ReadWrite) || !image.resize(size * mebibyte))
        qFatal("cannot make a disk image");
    image.close();
    run(u"sfdisk"_s, { u"--quiet"_s, m_image }, table);

    QByteArray output;
    // Without a partition scan: where the kernel cannot read the table, the next writer would take away the
    // partitions that are added here.
    runProgram(u"losetup"_s, { u"--find"_s, u"--show"_s, m_image }, &output);
    m_node = QString::fromUtf8(output).trimmed();
    requireOurs();
    deletePartitions(m_node); // of a disk that was detached under them
    run(u"partx"_s, { u"--add"_s, m_node });
    for (int i = 0; i < partitions.size(); ++i) {
        requireOurs();
        format(node(i + 1), partitions.at(i).filesystem, partitions.at(i).label);
    }
    // udev looks again when a writer closes the device, but misses one that does so while it is still
    // looking.
    settleUdev();
    for (int i = 0; i < partitions.size(); ++i)
        run(u"udevadm"_s, { u"trigger"_s, u"--settle"_s, node(i + 1) });
}

LoopDisk::~LoopDisk()
{
    if (isAttached())
        detach();
}

bool LoopDisk::isAttached() const
{
    QFile file(u"/sys/block/%1/loop/backing_file"_s.arg(QFileInfo(m_node).fileName()));
    return file.open(QIODevice::ReadOnly) && QFile::decodeName(file.readAll().trimmed()) == m_image;
}

void LoopDisk::requireOurs() const
{
    if (!isAttached())
        qFatal("%s is not the test's own disk", qPrintable(m_node));
}

void LoopDisk::detach()
{
    requireOurs();
    for (int i = 1; i <= m_partitionCount; ++i) {
        // What the disk service has mounted is in its mount namespace, which need not be this one.
        runProgram(u"udisksctl"_s, { u"unmount"_s, u"--force"_s, u"--block-device"_s, node(i) });
    }
    pull();
}

void LoopDisk::pull()
{
    requireOurs();
    for (int i = 1; i <= m_partitionCount; ++i) {
        for (const QString &point : mountPointsOf(node(i)))
            run(u"umount"_s, { u"--lazy"_s, point });
    }
    // A device that is pulled goes under whoever has it open. The kernel keeps a partition of this kind as
    // long as it is open: it goes with the disk's end.
    bool isHeld = false;
    for (int i = 1; i <= m_partitionCount; ++i) {
        if (isLocked(node(i))) {
            pretendRemoval(node(i));
            isHeld = true;
        }
    }
    if (isHeld)
        return;
    deletePartitions(m_node);
    run(u"losetup"_s, { u"--detach"_s, m_node });
}

void LoopDisk::overwrite(int partition, qint64 offset, const QByteArray &bytes)
{
    requireOurs();
    QFile device(node(partition));
    if (!device.open(QIODevice::ReadWrite | QIODevice::Unbuffered) || !device.seek(offset)
        || device.write(bytes) != bytes.size())
        qFatal("cannot write to %s", qPrintable(node(partition)));
    device.close();
    run(u"blockdev"_s, { u"--flushbufs"_s, node(partition) });
}

QByteArray LoopDisk::imageHash() const
{
    runProgram(u"sync"_s, {});
    QFile image(m_image);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!image.open(QIODevice::ReadOnly) || !hash.addData(&image))
        qFatal("cannot read the disk image");
    return hash.result();
}
