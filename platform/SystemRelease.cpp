// SPDX-License-Identifier: MIT
#include "platform/SystemRelease.h"

#include "platform/SystemLog.h"

#include <sys/utsname.h>

#include <cerrno>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

// What every Linux stands for.
const QByteArray newestGeneration = QByteArrayLiteral("24.0.0");

struct Override
{
    QByteArray release;
    int error = 0;
};

std::optional<Override> &releaseOverride()
{
    static std::optional<Override> value;
    return value;
}

} // namespace

int systemRelease(QByteArray *release)
{
    if (const auto &set = releaseOverride()) {
        if (set->error != 0)
            return set->error;
        *release = set->release;
        return 0;
    }
    utsname system {};
    if (uname(&system) != 0)
        return errno;
    *release = newestGeneration;
    return 0;
}

std::optional<unsigned long> systemMajorVersion()
{
    QByteArray release;
    if (const int error = systemRelease(&release)) {
        systemLog(u"Error while issuing 'utsname': %1 (%2)"_s.arg(errnoText(error)).arg(error));
        return std::nullopt;
    }
    const qsizetype point = release.indexOf('.');
    if (point >= 0)
        release.truncate(point);
    return std::strtoul(release.constData(), nullptr, 10);
}

SystemReleaseOverride::SystemReleaseOverride(QByteArray release, int error)
{
    releaseOverride() = Override { std::move(release), error };
}

SystemReleaseOverride::~SystemReleaseOverride()
{
    releaseOverride().reset();
}
