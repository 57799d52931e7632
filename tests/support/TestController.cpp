// SPDX-License-Identifier: MIT
#include "tests/support/TestController.h"

#include "app/MainWindow.h"
#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/OutlineView.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace {

// Runs the line in the real shell, with another program in the tool's place.
class SubstitutingPipe : public PosixShellPipe
{
public:
    explicit SubstitutingPipe(QString diskutil)
        : m_diskutil(std::move(diskutil))
    {
    }

    bool open(const QByteArray &command) override
    {
        QByteArray line = command;
        if (!m_diskutil.isEmpty())
            line.replace("/usr/sbin/diskutil", QFile::encodeName(m_diskutil));
        return PosixShellPipe::open(line);
    }

private:
    QString m_diskutil;
};

} // namespace

void TestWorkspace::openInFileManager(const QString &path, Completion completion)
{
    folders.append(path);
    completion(succeeds);
}

void TestWorkspace::openDocument(const QString &path, Completion completion)
{
    documents.append(path);
    completion(succeeds);
}

void TestWorkspace::findFolderAccess(const QString &, Completion completion)
{
    completion(isFolderOpen);
}

LogCapture::LogCapture()
    : m_redirection([this](const QString &line) {
        const std::lock_guard lock(m_mutex);
        m_lines.append(line);
    })
{
}

QStringList LogCapture::lines() const
{
    const std::lock_guard lock(m_mutex);
    return m_lines;
}

void LogCapture::clear()
{
    const std::lock_guard lock(m_mutex);
    m_lines.clear();
}

MemoryDiskRef makeDisk(const QString &bsdName)
{
    auto disk = std::make_shared<MemoryDisk>();
    disk->node = u"/dev/"_s + bsdName;
    disk->description = PropertyDictionary {
        { DAKey::mediaBSDName, bsdName },
        { DAKey::mediaWhole, true },
        { DAKey::mediaLeaf, true },
        { DAKey::mediaContent, QString() },
        { DAKey::mediaRemovable, false },
        { DAKey::mediaEjectable, false },
        { DAKey::mediaBlockSize, PropertyNumber(qint64 { 512 }) },
        { DAKey::volumeMountable, false },
        { DAKey::mediaWritable, true },
        { DAKey::mediaSize, PropertyNumber(qint64 { 500107862016 }) },
    };
    return disk;
}

MemoryDiskRef makePartition(const QString &bsdName, qint64 offset, const QString &volumeName)
{
    const MemoryDiskRef disk = makeDisk(bsdName);
    disk->description->insert(DAKey::mediaWhole, false);
    disk->description->insert(DAKey::volumeMountable, true);
    disk->description->insert(DAKey::mediaSize, PropertyNumber(qint64 { 100000000 }));
    if (!volumeName.isEmpty())
        disk->description->insert(DAKey::volumeName, volumeName);
    const qsizetype separator = bsdName.lastIndexOf(u's');
    disk->mediaProperties = PropertyDictionary {
        { IOMediaKey::base, PropertyNumber(offset) },
        { IOMediaKey::partitionID, PropertyNumber(bsdName.mid(separator + 1).toLongLong()) },
    };
    return disk;
}

MemoryDiskRef makeMountedVolume()
{
    const MemoryDiskRef volume = makePartition(u"disk2s1"_s, 1024, u"DATA"_s);
    volume->node = u"/dev/sdb1"_s;
    volume->description->insert(DAKey::volumeKind, u"NTFS"_s);
    setMounted(volume, u"/media/DATA"_s);
    return volume;
}

void setMounted(const MemoryDiskRef &disk, const QString &path)
{
    if (path.isEmpty())
        disk->description->remove(DAKey::volumePath);
    else
        disk->description->insert(DAKey::volumePath, QUrl::fromLocalFile(path));
}

void writeBundle(const QString &directory, const QString &name, const QByteArray &dictionaryXml)
{
    const QString contents = directory + u'/' + name + ".fs/Contents"_L1;
    QDir().mkpath(contents);
    QFile file(contents + "/Info.plist"_L1);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write a bundle");
    file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" + dictionaryXml
        + "</dict></plist>\n");
}

void writeWholeBundle(
    const QString &directory, const QString &name, const QString &personality, const QByteArray &keysXml)
{
    const QByteArray identifier
        = "<key>CFBundleIdentifier</key><string>org.test." + name.toUtf8() + "</string>";
    const QByteArray capabilities = "<key>FSFormatExecutable</key><string>f</string>"
                                    "<key>FSVerificationExecutable</key><string>v</string>"
                                    "<key>FSRepairExecutable</key><string>r</string>";
    writeBundle(directory, name,
        identifier + "<key>FSPersonalities</key><dict><key>" + personality.toUtf8()
            + "</key><dict><key>FSName</key><string>" + personality.toUtf8() + "</string>" + capabilities
            + keysXml + "</dict></dict>");
}

void press(const AlertSheet *sheet, int returnCode)
{
    QTest::mouseClick(sheet->buttonForReturn(returnCode), Qt::LeftButton);
}

TestController::TestController(const QString &localization)
{
    QDir().mkpath(systemDirectory());
    QDir().mkpath(localDirectory());
    loadLocalization(localization);
    m_platform.createSession = [this] { return service.createSession(); };
    m_platform.mountTable = mountTable;
    m_platform.workspace = workspace;
    m_platform.findTool = [this](const QString &name) {
        return absentTools.contains(name) ? QString() : u"/usr/bin/"_s + name;
    };
    m_platform.readDeviceUse = [this](const QString &node) { return deviceUses.value(node); };
    m_platform.readDeviceIdentity = [this](const QString &node) {
        const auto identity = deviceIdentities.constFind(node);
        return identity == deviceIdentities.constEnd() ? std::nullopt : std::optional(*identity);
    };
    m_platform.createShellPipe = [this] { return std::make_unique<SubstitutingPipe>(diskutil); };
    m_platform.preferredLocalizations = QStringList { localization };
    m_platform.localeIdentifier = localization;
    m_platform.filesystemDirectories = { systemDirectory(), localDirectory() };
    m_platform.userManualPath = u"/Library/Application Support/Zorvex NTFS/User Manual.pdf"_s;
}

TestController::~TestController()
{
    if (m_controller)
        m_controller->applicationWillTerminate();
    m_window.reset();
}

void TestController::load()
{
    m_controller = makeController ? makeController(m_platform)
                                  : std::make_unique<ZorvexDiskManagerAppDelegate>(m_platform);
    m_window = loadMainWindow(*m_controller);
}

void TestController::launch()
{
    if (!m_controller)
        load();
    m_window->show();
    m_controller->applicationDidFinishLaunching();
}

DiskRecord TestController::add(const MemoryDiskRef &disk)
{
    service.addDisk(disk);
    const PropertyValue *name = disk->description ? disk->description->value(DAKey::mediaBSDName) : nullptr;
    return name && name->asString() ? recordOf(*name->asString()) : nullptr;
}

DiskRecord TestController::recordOf(const QString &bsdName) const
{
    const OutlineView *view = m_controller->leftOutlineView;
    for (int row = 0; row < view->numberOfRows(); ++row) {
        const DiskRecord item = view->itemAtRow(row);
        if (item->bsdName == bsdName)
            return item;
    }
    return nullptr;
}

QStringList TestController::rowNames() const
{
    QStringList names;
    const OutlineView *view = m_controller->leftOutlineView;
    for (int row = 0; row < view->numberOfRows(); ++row)
        names.append(view->itemAtRow(row)->description());
    return names;
}

void TestController::select(const QString &bsdName)
{
    m_controller->leftOutlineView->selectRow(m_controller->leftOutlineView->rowForItem(recordOf(bsdName)));
}

void TestController::mount(const MemoryDiskRef &volume, const QString &path, qint64 freeSpace)
{
    setMounted(volume, path);
    MountedFilesystem mounted;
    mounted.mountPoint = QFile::encodeName(path);
    mounted.mountedFrom = "/dev/" + volume->description->value(DAKey::mediaBSDName)->asString()->toUtf8();
    mounted.id.first = static_cast<qint32>(mountTable->mounted.size() + 1);
    mountTable->mounted.push_back(mounted);
    mountTable->ids[mounted.mountPoint] = mounted.id;
    mountTable->freeSpaces[mounted.mountPoint] = freeSpace;
}

QAction *TestController::action(const QString &name) const
{
    return m_window->findChild<QAction *>(name);
}

void TestController::handlePostedEvents()
{
    QCoreApplication::processEvents();
}

QList<AlertSheet *> TestController::sheets() const
{
    QList<AlertSheet *> open;
    for (AlertSheet *sheet : m_window->findChildren<AlertSheet *>()) {
        if (sheet->isVisible())
            open.append(sheet);
    }
    return open;
}

void TestController::setDiskutilScript(const QByteArray &script)
{
    diskutil = m_scriptFolder.filePath(u"diskutil"_s);
    if (!m_scriptGate.isOpen()) {
        m_scriptGate.setFileName(m_scriptFolder.filePath(u"go"_s));
        if (mkfifo(QFile::encodeName(m_scriptGate.fileName()).constData(), 0600) != 0
            || !m_scriptGate.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
            qFatal("cannot make a named pipe");
    }
    QFile file(diskutil);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write a script");
    // The pipe is open from the beginning, so that a script that waits for a test that was killed reads its
    // end.
    file.write("#!/bin/sh\ndir='" + QFile::encodeName(m_scriptFolder.path()) + "'\nexec 3<\"$dir/go\"\n"
        + script + '\n');
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QByteArray TestController::fileFromScript(const QString &name) const
{
    QFile file(m_scriptFolder.filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestController::letScriptsGoOn(int count)
{
    m_scriptGate.write(QByteArray(count, '\n'));
    m_scriptGate.flush();
}
