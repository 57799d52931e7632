// SPDX-License-Identifier: MIT
#include "tests/support/RealWindow.h"

#include "app/MainWindow.h"
#include "filesystems/BundleScan.h"
#include "filesystems/VolumeClaims.h"
#include "platform/Localization.h"
#include "ui/AlertSheet.h"
#include "ui/OutlineView.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>
#include <QProcess>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

RealWindow::RealWindow(const QString &localization)
{
    loadLocalization(localization);
    ApplicationPlatform platform;
    platform.createSession
        = [] { return createDiskArbitrationSession(volumeClaimReader(filesystemDirectories())); };
    platform.mountTable = std::make_shared<KernelMountTable>();
    platform.workspace = std::make_shared<DesktopWorkspace>();
    platform.createShellPipe = [] { return std::make_unique<PosixShellPipe>(); };
    platform.preferredLocalizations = QStringList { localization };
    platform.localeIdentifier = localization;
    platform.filesystemDirectories = filesystemDirectories();
    m_controller = std::make_unique<ZorvexDiskManagerAppDelegate>(std::move(platform));
    m_window = loadMainWindow(*m_controller);
    m_window->show();
    m_controller->applicationDidFinishLaunching();
}

RealWindow::~RealWindow()
{
    m_controller->applicationWillTerminate();
}

DiskRecord RealWindow::recordOf(const QString &deviceNode) const
{
    const OutlineView *view = m_controller->leftOutlineView;
    for (int row = 0; row < view->numberOfRows(); ++row) {
        const DiskRecord item = view->itemAtRow(row);
        if (item->daDisk->deviceNode() == deviceNode)
            return item;
    }
    return nullptr;
}

QStringList RealWindow::rowNames() const
{
    QStringList names;
    const OutlineView *view = m_controller->leftOutlineView;
    for (int row = 0; row < view->numberOfRows(); ++row)
        names.append(view->itemAtRow(row)->description());
    return names;
}

QStringList RealWindow::nodesOfDisk(const QString &wholeNode) const
{
    QStringList nodes;
    const OutlineView *view = m_controller->leftOutlineView;
    for (int row = 0; row < view->numberOfRows(); ++row) {
        const QString node = view->itemAtRow(row)->daDisk->deviceNode();
        if (node == wholeNode || node.startsWith(wholeNode + u'p'))
            nodes.append(node);
    }
    return nodes;
}

void RealWindow::select(const DiskRecord &disk)
{
    m_controller->leftOutlineView->selectRow(m_controller->leftOutlineView->rowForItem(disk));
}

QList<AlertSheet *> RealWindow::sheets() const
{
    QList<AlertSheet *> open;
    for (AlertSheet *sheet : m_window->findChildren<AlertSheet *>()) {
        if (sheet->isVisible())
            open.append(sheet);
    }
    return open;
}

void RealWindow::endSheet(int returnCode)
{
    const QList<AlertSheet *> open = sheets();
    if (open.isEmpty())
        qFatal("there is no sheet to end");
    open.constFirst()->buttonForReturn(returnCode)->click();
}

pid_t diskServicePid()
{
    const QDBusReply<uint> pid
        = QDBusConnection::systemBus().interface()->servicePid(u"org.freedesktop.UDisks2"_s);
    return pid.isValid() ? static_cast<pid_t>(pid.value()) : 0;
}

QStringList mountPointsOf(const QString &deviceNode)
{
    QStringList points;
    for (const KernelMount &mount : readKernelMounts()) {
        if (QFile::decodeName(mount.source) == deviceNode)
            points.append(QFile::decodeName(mount.mountPoint));
    }
    return points;
}

QString probed(const QString &deviceNode, const QString &tag)
{
    QByteArray output;
    runProgram(u"blkid"_s, { u"-p"_s, u"-o"_s, u"value"_s, u"-s"_s, tag, deviceNode }, &output);
    return QString::fromUtf8(output).trimmed();
}

int runProgram(const QString &program, const QStringList &arguments, QByteArray *output)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.waitForFinished(-1);
    if (output)
        *output = process.readAll();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}
