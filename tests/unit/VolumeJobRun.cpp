// SPDX-License-Identifier: MIT
#include "tests/unit/VolumeJobRun.h"

using namespace Qt::Literals::StringLiterals;

VolumeJobRun::VolumeJobRun(Operation operation, JobLimits limits)
{
    line.format = u"Test"_s;
    line.name = u"New"_s;
    line.device = u"disk2s1"_s;
    disk->node = testNode;
    disk->description = PropertyDictionary { { DAKey::mediaBSDName, u"disk2s1"_s },
        { DAKey::mediaWritable, true }, { DAKey::volumeMountable, true }, { DAKey::volumeKind, u"testfs"_s },
        { DAKey::volumeName, u"Old"_s } };
    situation.isBlockDevice = situation.canRead = situation.canWrite = true;
    m_session = service.createSession();
    m_session->registerDiskAppearedCallback([this](const DADiskRef &appeared) { m_media.add(appeared); });
    m_session->registerDiskDescriptionChangedCallback(
        [this](const DADiskRef &changed, const QStringList &) { m_job->mediumChanged(changed); });
    m_session->scheduleWithRunLoop();
    service.addDisk(disk);
    m_job = std::make_unique<VolumeJob>(
        operation, line, JobEnvironment { *m_session, m_media, tools, machine(), limits });
    QObject::connect(m_job.get(), &VolumeJob::said, m_job.get(), [this](const QString &text) {
        said.append(text);
        if (text.startsWith(lastLineThatIsRead) && !lastLineThatIsRead.isEmpty())
            m_job->interrupt(u"nobody reads"_s);
    });
    QObject::connect(m_job.get(), &VolumeJob::complained, m_job.get(),
        [this](const QString &text) { complained.append(text); });
    QObject::connect(m_job.get(), &VolumeJob::finished, m_job.get(),
        [this](ExitCode code) { exits.append(static_cast<int>(code)); });
}

void VolumeJobRun::interrupt()
{
    m_job->interrupt(u"test"_s);
}

void VolumeJobRun::loseReader()
{
    m_job->loseReader(u"test"_s);
}

void VolumeJobRun::refuse()
{
    service.completeRequest(makeDissenter(DAReturn::Busy, u"the service says no"_s));
}

void VolumeJobRun::setMounted(bool isMounted)
{
    if (isMounted)
        disk->description->insert(DAKey::volumePath, QUrl::fromLocalFile(testMountPoint));
    else
        disk->description->remove(DAKey::volumePath);
}

std::vector<MemoryDiskService::RequestKind> VolumeJobRun::requests() const
{
    std::vector<MemoryDiskService::RequestKind> kinds;
    for (const auto &request : service.requests())
        kinds.push_back(request.kind);
    return kinds;
}

QStringList VolumeJobRun::programs() const
{
    QStringList names;
    for (const ToolCommand &command : tools.commands)
        names.append(command.program.section(u'/', -1));
    return names;
}

Machine VolumeJobRun::machine()
{
    Machine machine;
    machine.readInstalledBundles = [this] { return std::vector { bundle }; };
    machine.readDeviceSituation = [this](const auto &, const auto &) { return situation; };
    machine.readToolSituation = [this](const auto &, const auto &) { return toolSituation; };
    machine.findTool = [](const QString &name) -> QString { return u"/tools/"_s + name; };
    machine.readDeviceIdentity = [this](const auto &) { return identity; };
    machine.holdDevice = [this](const auto &) {
        ++holds;
        auto hold = std::make_shared<int>();
        if (m_hold.expired()) // the job also looks at the device for a moment
            m_hold = hold;
        return HeldDevice { [this, hold] { return heldIdentity; },
            [this](Claimant claimant) {
                claimants.append(claimant);
                return takingError;
            },
            [] { return std::vector { 7, 8 }; }, [this] { return isReadable; }, openError };
    };
    machine.readVolumeMounts = [this](const auto &) { return mounts; };
    machine.invokingUser = [this] { return invokingUser; };
    machine.inhibitShutdown = [this](const auto &) {
        auto inhibition = std::make_shared<int>();
        m_inhibition = inhibition;
        return inhibition;
    };
    machine.announceChange = [this](const QString &device) { announced.append(device); };
    machine.giveToDesktopUser = [this](const QString &path, const QString &) { given.append(path); };
    machine.findFolderAccess = [this](const QString &, QObject *, const auto &done) { done(isFolderOpen); };
    return machine;
}
