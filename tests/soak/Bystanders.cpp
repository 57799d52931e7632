// SPDX-License-Identifier: MIT
#include "tests/soak/Bystanders.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 mebibyte = 1024 * 1024;

// A cryptographic one would take longer than all the rest of a step.
std::size_t digestOf(const QString &node)
{
    QFile device(node);
    SoakWorld::require(device.open(QIODevice::ReadOnly | QIODevice::Unbuffered), u"cannot open "_s + node);
    std::size_t digest = 0;
    QByteArray piece(mebibyte, Qt::Uninitialized);
    qint64 length = 0;
    while ((length = device.read(piece.data(), piece.size())) > 0)
        digest = qHashBits(piece.constData(), static_cast<std::size_t>(length), digest);
    SoakWorld::require(length == 0, u"cannot read "_s + node);
    return digest;
}

} // namespace

Bystanders::Bystanders(const SoakWorld &world, const QStringList &nodes)
{
    for (const SoakDisk &disk : world.disks) {
        for (int i = 1; i <= disk.partitions.size(); ++i) {
            const QString node = disk.loop->node(i);
            if (!nodes.contains(node) && mountPointsOf(node).isEmpty())
                m_digests.insert(node, digestOf(node));
        }
    }
}

void Bystanders::requireUnchanged() const
{
    for (auto volume = m_digests.cbegin(); volume != m_digests.cend(); ++volume)
        SoakWorld::require(digestOf(volume.key()) == volume.value(), volume.key() + u" has changed");
}
