// SPDX-License-Identifier: MIT
#include "platform/DiskArbitration.h"

DADissenterRef makeDissenter(DAReturn status, std::optional<QString> statusString)
{
    return std::make_shared<const DADissenter>(
        DADissenter { static_cast<quint32>(status), std::move(statusString), false });
}

DADissenterRef makeDeclinedDissenter(std::optional<QString> statusString)
{
    return std::make_shared<const DADissenter>(
        DADissenter { static_cast<quint32>(DAReturn::NotPrivileged), std::move(statusString), true });
}

void DASession::registerDiskPeekCallback(DADiskPeekCallback callback, int)
{
    // The order ranks several clients of one session against each other; this session has one client.
    m_peek = std::move(callback);
}

void DASession::registerDiskAppearedCallback(DADiskAppearedCallback callback)
{
    m_appeared = std::move(callback);
}

void DASession::registerDiskDisappearedCallback(DADiskDisappearedCallback callback)
{
    m_disappeared = std::move(callback);
}

void DASession::registerDiskDescriptionChangedCallback(DADiskDescriptionChangedCallback callback)
{
    m_descriptionChanged = std::move(callback);
}

void DASession::setInitialListingCallback(std::function<void(bool serviceAvailable)> callback)
{
    m_initialListing = std::move(callback);
}

void DASession::setServiceCallback(std::function<void(bool isAvailable)> callback)
{
    m_service = std::move(callback);
}

void DASession::setBurstCallback(std::function<void(const std::function<void()> &report)> callback)
{
    m_burst = std::move(callback);
}

void DASession::deliverBurst(const std::function<void()> &report) const
{
    if (m_burst)
        m_burst(report);
    else
        report();
}

void DASession::setPassphraseQuestion(PassphraseQuestion question)
{
    m_passphraseQuestion = std::move(question);
}

void DASession::deliverListing(bool serviceAvailable)
{
    if (const auto callback = std::exchange(m_initialListing, nullptr))
        callback(serviceAvailable);
    const bool isNews = std::exchange(m_isServiceAvailable, serviceAvailable) != serviceAvailable;
    if (m_service && isNews)
        m_service(serviceAvailable);
}

void DASession::deliverAppeared(const DADiskRef &disk) const
{
    if (m_peek)
        m_peek(disk);
    if (m_appeared)
        m_appeared(disk);
}

void DASession::deliverDisappeared(const DADiskRef &disk) const
{
    if (m_disappeared)
        m_disappeared(disk);
}

void DASession::deliverDescriptionChanged(const DADiskRef &disk, const QStringList &keys) const
{
    if (m_descriptionChanged)
        m_descriptionChanged(disk, keys);
}
