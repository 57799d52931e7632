// SPDX-License-Identifier: MIT
#include "platform/propertylists/PropertyList.h"
#include "PropertyBounds.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto value
        = readPropertyList(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (value)
        PropertyBounds().check(*value);
    return 0;
}
