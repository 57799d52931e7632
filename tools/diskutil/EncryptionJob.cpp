// SPDX-License-Identifier: MIT
#include "tools/diskutil/EncryptionJob.h"

#include "tools/diskutil/Machine.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// How often somebody at a terminal is asked.
constexpr int mostQuestions = 3;

QString reasonOf(const DADissenter &dissenter)
{
    return dissenter.statusString.value_or(u"the disk service refuses it"_s);
}

ExitCode codeOf(const DADissenter &dissenter)
{
    if (dissenter.status == static_cast<quint32>(DAReturn::NotPrivileged))
        return ExitCode::NotPermitted;
    if (dissenter.status == static_cast<quint32>(DAReturn::Busy))
        return ExitCode::InUse;
    return dissenter.status == static_cast<quint32>(DAReturn::NotFound) ? ExitCode::MediumChanged
                                                                        : ExitCode::ToolFailed;
}

} // namespace

bool EncryptionJob::isFor(Verb verb)
{
    return verb == Verb::UnlockVolume || verb == Verb::LockVolume;
}

EncryptionJob::EncryptionJob(
    CommandLine line, DASession &session, const MediaList &media, PassphraseReader &reader)
    : m_line(std::move(line))
    , m_session(session)
    , m_media(media)
    , m_reader(reader)
{
}

void EncryptionJob::start()
{
    const std::optional<Medium> medium = findMedium(m_media.media(), m_line.device);
    m_disk = medium ? m_media.disk(medium->bsdName) : nullptr;
    if (!m_disk) {
        refuse(ExitCode::NoSuchDisk, u"there is no disk %1"_s.arg(m_line.device));
        return;
    }
    m_name = medium->bsdName;
    const DADisk::Encryption encryption = m_disk->encryption();
    const bool isUnlock = m_line.verb == Verb::UnlockVolume;
    if (encryption == DADisk::Encryption::None)
        refuse(ExitCode::NotSupported, u"%1 is not encrypted"_s.arg(m_name));
    else if (isUnlock && encryption == DADisk::Encryption::Unlocked)
        refuse(ExitCode::NotSupported, u"%1 is unlocked already"_s.arg(m_name));
    else if (isUnlock)
        unlock();
    else
        lock();
}

void EncryptionJob::unlock()
{
    m_session.setPassphraseQuestion([this](const DADiskRef &, bool isRetry, const PassphraseAnswer &answer) {
        askPassphrase(isRetry, answer);
    });
    m_session.mount(m_disk, kDADiskMountOptionDefault,
        [this](const DADiskRef &, const DADissenterRef &dissenter) { unlocked(dissenter); });
}

void EncryptionJob::askPassphrase(bool isRetry, const PassphraseAnswer &answer)
{
    m_isWrong = isRetry;
    if (isRetry && (!m_reader.isTerminal() || m_questions == mostQuestions)) {
        answer(std::nullopt);
        return;
    }
    ++m_questions;
    if (isRetry)
        Q_EMIT complained(u"that was not the passphrase"_s);
    if (m_reader.isTerminal())
        Q_EMIT asked(u"Passphrase for %1: "_s.arg(m_name));
    m_reader.read([this, answer](std::optional<Passphrase> passphrase) {
        if (!passphrase)
            m_isWrong = false;
        answer(std::move(passphrase));
    });
}

void EncryptionJob::unlocked(const DADissenterRef &dissenter)
{
    if (!dissenter) {
        Q_EMIT said(u"Unlocked and mounted %1"_s.arg(m_name));
        finish(ExitCode::Success);
    } else if (dissenter->isDeclined && m_questions > 0) {
        refuse(ExitCode::PassphraseRefused,
            m_isWrong ? u"%1 was not unlocked: that was not the passphrase"_s.arg(m_name)
                      : u"%1 was not unlocked: no passphrase was given"_s.arg(m_name));
    } else {
        refuse(codeOf(*dissenter),
            u"%1 could not be unlocked and mounted: %2"_s.arg(m_name, reasonOf(*dissenter)));
    }
}

void EncryptionJob::lock()
{
    m_session.unmount(
        m_disk, kDADiskUnmountOptionDefault, [this](const DADiskRef &disk, const DADissenterRef &dissenter) {
            if (dissenter) {
                refuse(ExitCode::UnmountRefused,
                    u"%1 could not be unmounted: %2"_s.arg(m_name, reasonOf(*dissenter)));
                return;
            }
            m_session.lock(disk, [this](const DADiskRef &, const DADissenterRef &refusal) {
                if (refusal) {
                    refuse(codeOf(*refusal), u"%1 could not be locked: %2"_s.arg(m_name, reasonOf(*refusal)));
                    return;
                }
                Q_EMIT said(u"Unmounted and locked %1"_s.arg(m_name));
                finish(ExitCode::Success);
            });
        });
}

void EncryptionJob::interrupt(const QString &reason)
{
    refuse(ExitCode::Interrupted, u"interrupted (%1)"_s.arg(reason));
}

void EncryptionJob::refuse(ExitCode code, const QString &reason)
{
    if (m_hasEnded)
        return;
    Q_EMIT complained(reason);
    finish(code);
}

void EncryptionJob::finish(ExitCode code)
{
    if (!std::exchange(m_hasEnded, true))
        Q_EMIT finished(code);
}
