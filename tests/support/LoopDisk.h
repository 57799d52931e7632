// SPDX-License-Identifier: MIT
//
// A loop disk for one test: an image in a temporary folder, partitioned, formatted, attached and taken off
// again. Before each write it proves that the device is its own. What fails ends the test program with a
// message.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTemporaryDir>

class LoopDisk
{
public:
    static constexpr const char *efiType = "C12A7328-F81F-11D2-BA4B-00A0C93EC93B";
    static constexpr const char *dataType = "EBD0A0A2-B9E5-4433-87C0-68B6B72699C7";
    static constexpr const char *linuxType = "0FC63DAF-8483-4772-8E79-3D69D8477DE4";

    struct Partition
    {
        int sizeMiB = 0;
        QString typeGuid;
        QString filesystem; // ext4, ntfs, exfat, vfat or empty
        QString label;
    };

    // Makes the image and attaches it with its partitions, formatted.
    explicit LoopDisk(const QList<Partition> &partitions);

    // Unmounts what is mounted of it, and detaches it.
    ~LoopDisk();
    LoopDisk(const LoopDisk &) = delete;
    LoopDisk &operator=(const LoopDisk &) = delete;

    QString node() const { return m_node; }
    QString node(int partition) const { return m_node + u'p' + QString::number(partition); }

    bool isAttached() const;

    // Takes the disk off the machine as if it had been pulled: volumes are unmounted lazily first.
    void detach();

    // The same without a word to the disk service, which may be unable to hear it: what it has mounted must
    // be in this mount namespace.
    void pull();

    // Writes into the image at this offset in bytes of a partition, behind the kernel's back.
    void overwrite(int partition, qint64 offset, const QByteArray &bytes);

    // A digest of the whole image.
    QByteArray imageHash() const;

private:
    void requireOurs() const;

    QTemporaryDir m_folder;
    QString m_image;
    QString m_node;
    int m_partitionCount = 0;
};
