// SPDX-License-Identifier: MIT
#include "tests/support/MemoryDiskSession.h"

class MemoryDiskSession : public DASession
{
public:
    explicit MemoryDiskSession(MemoryDiskService &service)
        : m_service(service)
    {
    }
    ~MemoryDiskSession() override { leave(); }

    void scheduleWithRunLoop() override
    {
        m_service.m_session = this;
        for (const MemoryDiskRef &disk : std::vector(m_service.m_disks))
            deliverAppeared(disk);
        deliverListing(m_service.m_isAvailable);
    }
    void unscheduleFromRunLoop() override { leave(); }
    void refresh() override { ++m_service.m_refreshCount; }

    void mount(const DADiskRef &disk, quint32 options, DADiskCompletion completion) override
    {
        enqueue({ MemoryDiskService::RequestKind::Mount, disk, options, {}, std::move(completion) });
    }
    void mountAgain(const DADiskRef &disk, const QString &user, const QStringList &options,
        DADiskCompletion completion) override
    {
        enqueue({ MemoryDiskService::RequestKind::MountAgain, disk, kDADiskMountOptionDefault, user,
            std::move(completion), options });
    }
    void unmount(const DADiskRef &disk, quint32 options, DADiskCompletion completion) override
    {
        enqueue({ MemoryDiskService::RequestKind::Unmount, disk, options, {}, std::move(completion) });
    }
    DADiskRef unlockedDisk(const DADiskRef &disk) const override
    {
        const auto known = std::dynamic_pointer_cast<MemoryDisk>(disk);
        return known ? known->unlocked.lock() : nullptr;
    }
    void lock(const DADiskRef &disk, DADiskCompletion completion) override
    {
        enqueue({ MemoryDiskService::RequestKind::Lock, disk, 0, {}, std::move(completion) });
    }
    void eject(const DADiskRef &disk, quint32 options, DADiskCompletion completion) override
    {
        enqueue({ MemoryDiskService::RequestKind::Eject, disk, options, {}, std::move(completion) });
    }
    void rename(
        const DADiskRef &disk, const QString &name, quint32 options, DADiskCompletion completion) override
    {
        enqueue({ MemoryDiskService::RequestKind::Rename, disk, options, name, std::move(completion) });
    }

    using DASession::deliverAppeared;
    using DASession::deliverBurst;
    using DASession::deliverDescriptionChanged;
    using DASession::deliverDisappeared;
    using DASession::deliverListing;
    using DASession::passphraseQuestion;

private:
    void enqueue(MemoryDiskService::Request request) { m_service.m_requests.push_back(std::move(request)); }

    void leave()
    {
        if (m_service.m_session == this) {
            m_service.m_session = nullptr;
            m_service.m_requests.clear();
        }
    }

    MemoryDiskService &m_service;
};

std::unique_ptr<DASession> MemoryDiskService::createSession()
{
    return std::make_unique<MemoryDiskSession>(*this);
}

void MemoryDiskService::addDisk(const MemoryDiskRef &disk)
{
    m_disks.push_back(disk);
    if (m_session)
        m_session->deliverAppeared(disk);
}

void MemoryDiskService::addDisks(
    const std::vector<MemoryDiskRef> &disks, const std::vector<MemoryDiskRef> &changed)
{
    const auto report = [&] {
        for (const MemoryDiskRef &disk : changed)
            changeDisk(disk);
        for (const MemoryDiskRef &disk : disks)
            addDisk(disk);
    };
    if (m_session)
        m_session->deliverBurst(report);
    else
        report();
}

void MemoryDiskService::removeDisk(const MemoryDiskRef &disk)
{
    std::erase(m_disks, disk);
    if (m_session)
        m_session->deliverDisappeared(disk);
}

void MemoryDiskService::changeDisk(const MemoryDiskRef &disk, const QStringList &keys)
{
    if (m_session)
        m_session->deliverDescriptionChanged(disk, keys);
}

void MemoryDiskService::askPassphrase(const DADiskRef &disk, bool isRetry, PassphraseAnswer answer)
{
    m_session->passphraseQuestion()(disk, isRetry, std::move(answer));
}

void MemoryDiskService::completeRequest(const DADissenterRef &dissenter)
{
    Q_ASSERT(!m_requests.empty());
    const Request request = m_requests.front();
    m_requests.erase(m_requests.begin());
    request.completion(request.disk, dissenter);
}

void MemoryDiskService::setAvailable(bool isAvailable)
{
    m_isAvailable = isAvailable;
    while (!isAvailable && !m_disks.empty())
        removeDisk(m_disks.back());
    if (m_session)
        m_session->deliverListing(isAvailable);
}
