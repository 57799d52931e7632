// SPDX-License-Identifier: MIT
#include "tests/unit/FakeSystem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/sysmacros.h>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray numberText(dev_t number)
{
    return QByteArray::number(major(number)) + ':' + QByteArray::number(minor(number));
}

void link(const QByteArray &from, const QByteArray &to)
{
    const QString name = QFile::decodeName(from);
    const QDir folder = QFileInfo(name).dir();
    if (!folder.mkpath(u"."_s) || !QFile::link(folder.relativeFilePath(QFile::decodeName(to)), name))
        qFatal("The link %s could not be made.", from.constData());
}

} // namespace

SystemRoot FakeSystem::root() const
{
    return { QFile::encodeName(m_folder.path()), [this](const QByteArray &path) {
                const auto found = m_files.find(path);
                return found == m_files.end() ? std::nullopt : std::optional<struct stat>(found->second);
            } };
}

void FakeSystem::addFolder(const QByteArray &name, const QByteArray &path, dev_t number)
{
    m_folders[name] = QFile::encodeName(m_folder.path()) + path;
    link(QFile::encodeName(m_folder.path()) + "/sys/dev/block/" + numberText(number), m_folders[name]);
    addNode("/dev/" + name, number);
}

void FakeSystem::addDisk(const QByteArray &name, dev_t number, const QByteArray &sequence)
{
    const QByteArray path = "/sys/devices/pci/block/" + name;
    write(path + "/diskseq", sequence + '\n');
    write(path + "/queue/logical_block_size", "512\n");
    addFolder(name, path, number);
}

void FakeSystem::addPartition(
    const QByteArray &disk, const QByteArray &name, dev_t number, const QByteArray &partitionNumber)
{
    const QByteArray path = "/sys/devices/pci/block/" + disk + '/' + name;
    write(path + "/partition", partitionNumber + '\n');
    write(path + "/start", "2048\n");
    write(path + "/size", "40960\n");
    addFolder(name, path, number);
}

void FakeSystem::addHolder(const QByteArray &lower, const QByteArray &upper)
{
    link(folder(lower) + "/holders/" + upper, folder(upper));
    link(folder(upper) + "/slaves/" + lower, folder(lower));
}

void FakeSystem::addNode(const QByteArray &path, dev_t number)
{
    struct stat status = {};
    status.st_mode = S_IFBLK;
    status.st_rdev = number;
    m_files[path] = status;
}

void FakeSystem::addCharacterNode(const QByteArray &path, dev_t number)
{
    addNode(path, number);
    m_files[path].st_mode = S_IFCHR;
}

void FakeSystem::addFile(const QByteArray &path, dev_t filesystem)
{
    struct stat status = {};
    status.st_mode = S_IFREG;
    status.st_dev = filesystem;
    m_files[path] = status;
}

void FakeSystem::mount(const QByteArray &number, const QByteArray &source, const QByteArray &mountPoint,
    int id, const QByteArray &folderOfIt)
{
    m_mounts += QByteArray::number(id) + " 1 " + number + ' ' + folderOfIt + ' ' + mountPoint
        + " rw,relatime shared:1 - ext4 " + source + " rw\n";
    writeMounts(m_mounts);
}

void FakeSystem::automount(const QByteArray &mountPoint)
{
    m_mounts += "29 1 0:29 / " + mountPoint + " rw,relatime shared:1 - autofs systemd-1 rw,fd=1\n";
    writeMounts(m_mounts);
}

void FakeSystem::writeProperties(dev_t number, const QByteArrayList &properties)
{
    QByteArray text = "S:disk/by-path/fake\nI:1\n";
    for (const QByteArray &property : properties)
        text += "E:" + property + '\n';
    write("/run/udev/data/b" + numberText(number), text);
}

void FakeSystem::writeMounts(const QByteArray &text)
{
    write("/proc/self/mountinfo", text);
}

void FakeSystem::writeSwaps(const QByteArray &lines)
{
    write("/proc/swaps", "Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n" + lines);
}

void FakeSystem::write(const QByteArray &path, const QByteArray &content)
{
    const QString name = m_folder.path() + QFile::decodeName(path);
    QFile file(name);
    if (!QDir().mkpath(QFileInfo(name).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(content) != content.size())
        qFatal("%s could not be written.", path.constData());
}
