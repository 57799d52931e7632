// SPDX-License-Identifier: MIT
#include "filesystems/VolumeClaims.h"

#include <algorithm>
#include <limits>

#include "platform/NoWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// A bundle that does not say where it stands comes after all that do.
constexpr qint64 lastProbeOrder = std::numeric_limits<qint64>::max();

// Returns std::nullopt for a number that no record can hold.
std::optional<qint16> subtypeOf(const PropertyDictionary &variant)
{
    const PropertyNumber *number = variant.number(u"FSSubType"_s);
    const auto value = number ? number->toLongLong() : std::nullopt;
    if (!value || *value < std::numeric_limits<qint16>::min() || *value > std::numeric_limits<qint16>::max())
        return std::nullopt;
    return static_cast<qint16>(*value);
}

} // namespace

VolumeClaims::BundleClaim VolumeClaims::claimOf(const BundleDescription &bundle)
{
    const PropertyDictionary &information = bundle.information;
    BundleClaim claim { bundle.name, information.texts(u"FSLinuxTypes"_s), bundle.isTrusted, lastProbeOrder,
        {} };
    if (const PropertyNumber *order = information.number(u"FSProbeOrder"_s))
        claim.probeOrder = order->longLongValue();
    if (const PropertyArray *variants = information.array(u"FSLinuxSubtypes"_s)) {
        for (const PropertyValue &value : *variants) {
            const PropertyDictionary *variant = value.asDictionary();
            if (const auto subtype = variant ? subtypeOf(*variant) : std::nullopt)
                claim.variants.push_back(
                    { variant->text(u"IdType"_s), variant->text(u"IdVersion"_s), *subtype });
        }
    }
    return claim;
}

VolumeClaims VolumeClaims::read(
    const QStringList &directories, const BundleGuard &guard, Distrusted distrusted)
{
    VolumeClaims claims;
    // The catalogue logs what cannot be read. It reads at every activation of the window, this at every event
    // of a disk.
    scanBundles(
        directories, [](const QString &) {},
        [&claims](const BundleDescription &bundle) {
            claims.m_claims.push_back(claimOf(bundle));
            return true;
        },
        guard, distrusted);
    std::stable_sort(
        claims.m_claims.begin(), claims.m_claims.end(), [](const BundleClaim &a, const BundleClaim &b) {
            return a.isTrusted == b.isTrusted ? a.probeOrder < b.probeOrder : a.isTrusted;
        });
    return claims;
}

std::optional<VolumeClaim> VolumeClaims::find(const QString &type, const QString &version) const
{
    const auto claim = std::find_if(m_claims.begin(), m_claims.end(),
        [&type](const BundleClaim &candidate) { return candidate.types.contains(type); });
    if (claim == m_claims.end())
        return std::nullopt;
    const auto variant
        = std::find_if(claim->variants.begin(), claim->variants.end(), [&](const Variant &candidate) {
              return candidate.type == type && (candidate.version.isEmpty() || candidate.version == version);
          });
    VolumeClaim found { claim->bundleName, {} };
    if (variant != claim->variants.end())
        found.subtype = variant->subtype;
    return found;
}

VolumeClaimReader volumeClaimReader(QStringList directories, BundleGuard guard, Distrusted distrusted)
{
    return
        [directories = std::move(directories), guard = std::move(guard), distrusted]() -> VolumeClaimLookup {
            return [claims = VolumeClaims::read(directories, guard, distrusted)](
                       const QString &type, const QString &version) { return claims.find(type, version); };
        };
}
