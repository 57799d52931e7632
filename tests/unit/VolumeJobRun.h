// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/MemoryDiskSession.h"
#include "tests/unit/JobTools.h"
#include "tools/diskutil/VolumeJob.h"

#include <memory>
#include <optional>
#include <vector>

inline const QString testNode = QStringLiteral("/nonexistent/sdb1");
inline const QString testMountPoint = QStringLiteral("/media/user/Volume");

// A volume named "Old" on disk2s1, and one job on it.
class VolumeJobRun
{
public:
    explicit VolumeJobRun(Operation operation, JobLimits limits = {});

    void start() { m_job->start(); }
    void interrupt();
    void loseReader();

    void setMounted(bool isMounted);

    // The disk service hears of a volume of this name.
    void tellVolume(const QString &name)
    {
        disk->description->insert(DAKey::volumeName, name);
        service.changeDisk(disk);
    }

    // The requests that wait for an answer.
    std::vector<MemoryDiskService::RequestKind> requests() const;
    bool waitsForUnmount() const
    {
        return requests() == std::vector { MemoryDiskService::RequestKind::Unmount };
    }
    bool waitsForMount() const { return requests() == std::vector { MemoryDiskService::RequestKind::Mount }; }

    void grantUnmount()
    {
        setMounted(false);
        service.completeRequest();
    }
    void grantMount()
    {
        setMounted(true);
        service.completeRequest();
    }
    void refuse(); // whatever was asked

    QStringList programs() const; // names of those that were run

    bool isHeld() const { return !m_hold.expired(); }
    bool isShutdownInhibited() const { return !m_inhibition.expired(); }

    CommandLine line;
    MemoryDiskService service;
    MemoryDiskRef disk = std::make_shared<MemoryDisk>();
    TestTools tools;
    FilesystemBundle bundle = testBundle();

    // What the machine answers.
    PreflightRules::DeviceSituation situation;
    PreflightRules::ToolSituation toolSituation;
    std::optional<DeviceIdentity> identity { DeviceIdentity { 1, 2, 3, 4 } };
    std::optional<DeviceIdentity> heldIdentity = identity;
    int openError = 0;
    int takingError = 0;
    bool isReadable = true;
    std::vector<VolumeMount> mounts;
    QString invokingUser;

    // What came of it.
    QStringList said;
    QStringList complained;
    QList<int> exits;
    QStringList announced;
    QStringList given;
    int holds = 0; // times that the device was opened
    QList<Claimant> claimants; // of the device, each time that it was taken
    bool isFolderOpen = true;
    QString lastLineThatIsRead; // the reader of the output goes once a line has begun so

private:
    Machine machine();

    std::weak_ptr<int> m_hold;
    std::weak_ptr<int> m_inhibition;
    MediaList m_media;
    std::unique_ptr<DASession> m_session;
    std::unique_ptr<VolumeJob> m_job;
};

inline QList<int> only(ExitCode code)
{
    return { static_cast<int>(code) };
}
