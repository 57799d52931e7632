// SPDX-License-Identifier: MIT
#include "platform/propertylists/PropertyList.h"
#include "PropertyBounds.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto table
        = readStringsTable(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (table)
        PropertyBounds().check(*table);
    return 0;
}
